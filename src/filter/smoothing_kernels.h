// The inner loops of anti-aliasing and noise removal; they run beyond `count`, up to kFilterSlack.
#pragma once

#include <algorithm>

#include "filter/filter_frame.h"

namespace qv8 {

// The rows below, at and above, each at the first sample; one of the outer two is null beyond the border.
struct RowsOfThree {
    const BYTE* rows[3];
};

struct SmoothingKernels {
    // Means of each sample and those `step` before and behind it.
    void (*means)(const BYTE* samples, int step, int count, BYTE* result);
    // The median of the neighbours of each sample, the upper one of an even number, where one of them differs from it
    // by more than the threshold; else the sample.
    void (*medians)(const RowsOfThree& around, int step, int threshold, int count, BYTE* result);
    // Where in its neighbourhood, as Filter::Result::kNeighbour tells it, the sample of middle rank is, the first one
    // of equal ones ranking first, from the row below and the left; of an even number the upper one.
    void (*medianPositions)(const RowsOfThree& around, int count, BYTE* result);
    // That sample itself.
    void (*medianLevels)(const RowsOfThree& around, int count, BYTE* result);
    // 24-bit pixels copied from the positions of their neighbourhoods; does not write beyond them. Null where one by
    // one is faster.
    void (*copyNeighbours24)(const RowsOfThree& around, const BYTE* positions, int count, BYTE* result);
};

const SmoothingKernels& TheSmoothingKernels();

// Runs use(index) for the samples at the left and right border among those from `begin` on, once each.
template <class Use>
void ForEachCutSample(const FilterRow& at, int begin, int count, Use use) {
    const int samples = at.width * at.step;
    for (int i = begin; i < std::min(begin + count, at.step); ++i) {
        use(i);
    }
    for (int i = std::max({begin, at.step, samples - at.step}); i < begin + count; ++i) {
        use(i);
    }
}

} // namespace qv8
