// The inner loops of the box mean. Column sums are the sums of one column of the box; their loops run beyond `count`,
// up to kFilterSlack.
#pragma once

#include "platform/platform.h"

namespace qv8 {

constexpr int kMaxNarrowRadius = 7; // boxes up to 15 x 15 have sums within 16 bits

struct BoxMeanKernels {
    // Adds a row of samples to column sums and takes another one off; either may be null.
    void (*slide)(const BYTE* added, const BYTE* removed, int count, WORD* sums);
    // Means of 2 * radius + 1 column sums around each, `step` apart, with radius at most kMaxNarrowRadius.
    void (*narrowMeans)(const WORD* sums, int radius, int step, int boxPixels, int count, BYTE* result);
    // sums[step + i] becomes the sum of values[i], values[i - step] and so on; `step` is 1 or 3, the first sums 0.
    void (*runningSums)(const WORD* values, int step, int count, DWORD* sums);
    // Means of what the running sums grow by over `distance` entries.
    void (*wideMeans)(const DWORD* sums, int distance, int boxPixels, int count, BYTE* result);
};

const BoxMeanKernels& TheBoxMeanKernels();

} // namespace qv8
