// Black and white by a threshold.
#pragma once

#include "platform/platform.h"

namespace qv8 {

struct ThresholdKernels {
    // Packed 24-bit pixels to bits, the first pixel in the highest: 1 where the sum of the channels is at least
    // `least`. Bits behind the last pixel of the last byte are 0.
    void (*threshold24)(const BYTE* pixels, int least, int count, BYTE* bits);
};

const ThresholdKernels& TheThresholdKernels();

} // namespace qv8
