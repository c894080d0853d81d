// The inner loops of a convolution.
#pragma once

#include "platform/platform.h"

namespace qv8 {

// How a sum becomes a sample: divided, truncating toward zero, plus the offset, clamped to 0..255.
struct SumScale {
    int divisor;
    int offset;
};

// sources[i] is the neighbour of the first sample for weight i; both sources and the result are used beyond `count`, up
// to kFilterSlack.
struct ConvolutionKernels {
    // Every sum lies in lowest..lowest + 65535.
    void (*narrow)(const BYTE* const* sources, const LONG* weights, int taps, int lowest, const SumScale& scale,
                   int count, BYTE* result);
    // Sums wrap around at 32 bits.
    void (*wide)(const BYTE* const* sources, const LONG* weights, int taps, const SumScale& scale, int count,
                 BYTE* result);
};

const ConvolutionKernels& TheConvolutionKernels();

} // namespace qv8
