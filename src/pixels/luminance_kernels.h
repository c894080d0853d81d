// Luminance of a colour: products with kLuminanceWeights, each in single precision.
#pragma once

#include "pixels/pixel_kernels.h"

namespace qv8 {

struct LuminanceKernels {
    // The products of red, green and blue summed from left to right in single precision, truncated.
    void (*luminance)(const PlanarRow& row, BYTE* result, int count);
    void (*luminance24)(const BYTE* pixels, BYTE* result, int count); // the same of 24-bit pixels
    // The same products summed in double precision, truncated: the grey levels of colour conversion, of 24-bit pixels.
    void (*greyLevel24)(const BYTE* pixels, BYTE* levels, int count);
    // 24-bit pixels with all three channels at their luminance.
    void (*grey24)(const BYTE* source, BYTE* result, int count);
};

const LuminanceKernels& TheLuminanceKernels();

// The same for one colour.
BYTE LuminanceOf(const RGBQUAD& colour);
BYTE GreyLevelOf(const RGBQUAD& colour);

} // namespace qv8
