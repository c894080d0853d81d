// The inner loops of comparing colours with a key colour.
#pragma once

#include "pixels/pixel_kernels.h"

namespace qv8 {

struct ColourMatchKernels {
    // The colour differences, around 128.
    void (*differences)(const PlanarRow& row, BYTE* cr, BYTE* cb, int count);
    // Compares one, two or three components.
    void (*compare[3])(const BYTE* const* components, const BYTE* key, WORD limit, BYTE* matches, int count);
};

const ColourMatchKernels& TheColourMatchKernels();

} // namespace qv8
