// Luminance and colour differences: there, changed, and back, on planar channels in place.
#pragma once

#include "pixels/pixel_kernels.h"

namespace qv8 {

// A component v becomes (v ^ flip) + add in 32-bit arithmetic that wraps around.
struct ComponentShift {
    int flip;
    int add;
};

struct YccShift {
    ComponentShift y;
    ComponentShift cr;
    ComponentShift cb;
};

// What each of the 256 values of a component becomes, whole numbers; colour differences come out around 0.
struct YccTables {
    float y[256];
    float cr[256];
    float cb[256];
};

// Beyond this, exact in single precision, components keep their sign and no more; 128 can be taken off any.
constexpr int kFarComponent = 0x7FFFFF80;

struct YccKernels {
    void (*shift)(const YccShift& shift, const PlanarRow& row, int count);
    void (*map)(const YccTables& tables, const PlanarRow& row, int count);
    // Colour differences, taken around 0, times a factor.
    void (*scale)(float factor, const PlanarRow& row, int count);
    // The gamma curve of pixels, in single precision, truncated toward zero, less an offset.
    void (*gammaTable)(double gamma, int offset, float* table);
};

const YccKernels& TheYccKernels();

// The way back for one colour, as the kernels do it; the reserved byte is 0.
RGBQUAD FromYcc(float y, float cr, float cb);

} // namespace qv8
