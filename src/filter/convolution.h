// Convolution with a small integer kernel: the custom filter and the relief.
#pragma once

#include "filter/filter_frame.h"
#include "frame/progress.h"

namespace qv8 {

constexpr int kMaxTaps = 81;

// A weight that is not 0, and where its neighbour stands; dy counts upward.
struct Tap {
    int dx;
    int dy;
    LONG weight;
};

struct Convolution {
    Tap taps[kMaxTaps];
    int tapCount = 0;
    int divisor = 1; // 1..255
    int offset = 0;  // 0..255, added after the division
    // Whether all sums, less the lowest, fit 16 bits; `lowest` is the least sum that any pixels can have.
    bool narrow = true;
    int lowest = 0;
};

// The taps of a square kernel of `side` rows, the one above first.
Convolution MakeConvolution(const LONG* kernel, int side, int divisor, int offset);

// The filter's kernel; `context` is a Convolution.
void Convolve(const void* context, const FilterRow& at, Plane plane, int begin, int count, BYTE* result);

// QV8CustomFilter. `kernel` holds 81 weights, the row above first; the sum is divided by `divisor`, then `offset` is
// added, in levels. Statuses as ApplyFilter, 5 also without a kernel or for a divisor of 0.
HGLOBAL CustomFilter(const AreaArguments& area, const LONG* kernel, BYTE divisor, BYTE offset, bool red, bool green,
                     bool blue, const Progress& progress);

// QV8Emboss. `direction` is a number of qv8effect.h; `depth` 1..5, clamped, the strongest last; `base` is the level of
// even surfaces. Statuses as ApplyFilter, 5 also for another direction.
HGLOBAL Emboss(const AreaArguments& area, BYTE direction, BYTE depth, BYTE base, const Progress& progress);

} // namespace qv8
