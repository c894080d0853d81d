#include "filter/sharpen.h"

#include <algorithm>

#include "filter/sharpen_kernels.h"

namespace qv8 {
namespace {

constexpr int kMaxStrength = 100;

// The rows of the box that are in the picture.
struct BoxRows {
    const BYTE* rows[3];
    int count = 0;
};

BoxRows RowsAround(const FilterRow& at) {
    BoxRows result;
    for (int dy = -1; dy <= 1; ++dy) {
        if (at.row + dy >= 0 && at.row + dy < at.height) {
            result.rows[result.count++] = at.rows[kLuminance][dy];
        }
    }
    return result;
}

// The difference at a column whose box the left or right border cuts.
short CutDifference(const FilterRow& at, const BoxRows& box, int column) {
    const int first = std::max(column - 1, 0);
    const int last = std::min(column + 1, at.width - 1);
    int sum = 0;
    for (int r = 0; r < box.count; ++r) {
        for (int x = first; x <= last; ++x) {
            sum += box.rows[r][x];
        }
    }
    return static_cast<short>(box.count * (last - first + 1) * at.rows[kLuminance][0][column] - sum);
}

void SharpenPixels(const void* context, const FilterRow& at, int begin, int end, const PlanarRow& result) {
    const float strength = *static_cast<const float*>(context);
    const BYTE* const luminance = at.rows[kLuminance][0] + begin;
    auto* const differences = reinterpret_cast<short*>(at.scratch[0]);
    const int count = end - begin;

    const BoxRows box = RowsAround(at);
    const BYTE* rows[3];
    std::transform(box.rows, box.rows + box.count, rows, [begin](const BYTE* row) { return row + begin; });
    TheSharpenKernels().differences(rows, box.count, luminance, count, differences);
    for (const int column : {0, at.width - 1}) {
        if (begin <= column && column < end) {
            differences[column - begin] = CutDifference(at, box, column);
        }
    }

    if (at.isGrey) {
        TheSharpenKernels().grey(strength, luminance, differences, count, result.blue);
        return;
    }
    // The kernel writes to none of the rows it reads.
    const auto sourceRow = [&](Plane plane) { return const_cast<BYTE*>(at.rows[plane][0]) + begin; };
    TheSharpenKernels().colours(strength, luminance, differences,
                                {sourceRow(kBlue), sourceRow(kGreen), sourceRow(kRed)}, count, result);
}

} // namespace

HGLOBAL Sharpen(const AreaArguments& area, BYTE strength, const Progress& progress) {
    const auto factor = static_cast<float>(std::min<int>(strength, kMaxStrength) * 3.0 / 100.0);
    Filter filter;
    filter.reach = 1;
    filter.context = &factor;
    filter.filterPixels = SharpenPixels;
    filter.wantsLuminance = true;
    filter.scratchBytes = sizeof(short);
    return ApplyFilter(area, filter, progress);
}

} // namespace qv8
