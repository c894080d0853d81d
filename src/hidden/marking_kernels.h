// Raising the luminance of pixels, and finding the pixels whose luminance has risen.
#pragma once

#include "pixels/pixel_kernels.h"

namespace qv8 {

// No two luminances are that far apart, so that any greater strength or threshold has the effect of this one.
constexpr int kMaxLuminanceStep = 256;

struct MarkingKernels {
    // Adds `strength` (-256..256) to the luminance of each pixel that does not leave 0..255 by it, and takes every
    // pixel from luminance and colour differences back to a colour, in place. Pixels whose `selected` is 0 instead of 1
    // stay as they are. Works on up to eight pixels at once: all arrays have room for that.
    void (*raise)(int strength, const BYTE* selected, const PlanarRow& row, int count);
    // 1 for a luminance that has risen by at least `threshold` (-256..256) from `before` to `after`, else 0.
    void (*risen)(int threshold, const BYTE* before, const BYTE* after, BYTE* result, int count);
};

const MarkingKernels& TheMarkingKernels();

} // namespace qv8
