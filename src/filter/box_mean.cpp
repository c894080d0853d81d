#include "filter/box_mean.h"

#include <algorithm>
#include <cstring>

#include "filter/box_mean_kernels.h"

namespace qv8 {
namespace {

constexpr int kMaxRadius = 20;

struct BoxMean {
    int radius;
    int summedRow[3] = {-1, -1, -1}; // the row that a plane's column sums belong to
};

// The filter's memory for one plane: column sums, 0 beyond the picture's border, and running sums of these.
struct PlaneSums {
    WORD* columns;
    DWORD* running;
};

// The running sums follow the columns' right end.
PlaneSums SumsOf(const FilterRow& at, Plane plane, int radius) {
    auto* const columns = reinterpret_cast<WORD*>(at.scratch[plane]);
    const std::ptrdiff_t used = std::ptrdiff_t{at.width} * at.step + std::ptrdiff_t{radius} * at.step + kFilterSlack;
    return {columns, reinterpret_cast<DWORD*>(columns + (used + 1) / 2 * 2)};
}

int RowsOfBox(const FilterRow& at, int radius) {
    return std::min(at.row + radius, at.height - 1) - std::max(at.row - radius, 0) + 1;
}

// Brings the column sums to this row: from the row before when they stand there, else anew.
void SumColumns(const FilterRow& at, Plane plane, BoxMean& box, WORD* columns) {
    const int count = at.width * at.step;
    const BYTE* const* const rows = at.rows[plane];
    const auto slide = TheBoxMeanKernels().slide;
    if (at.row > 0 && box.summedRow[plane] == at.row - 1) {
        const BYTE* const entering = at.row + box.radius < at.height ? rows[box.radius] : nullptr;
        const BYTE* const leaving = at.row - 1 - box.radius >= 0 ? rows[-1 - box.radius] : nullptr;
        slide(entering, leaving, count, columns);
    } else {
        std::memset(columns, 0, static_cast<std::size_t>(count) * sizeof *columns);
        const int last = std::min(box.radius, at.height - 1 - at.row);
        for (int dy = -std::min(box.radius, at.row); dy <= last; ++dy) {
            slide(rows[dy], nullptr, count, columns);
        }
    }
    std::memset(columns + count, 0, kFilterSlack * sizeof *columns); // where the loops went beyond the border
    box.summedRow[plane] = at.row;
}

// Means of boxes that the left or right border cuts, of one channel, from sample `begin` on. Beyond the border column
// sums are 0.
void CutMeans(const FilterRow& at, const WORD* columns, int radius, int begin, int end, BYTE* result) {
    const int rows = RowsOfBox(at, radius);
    const int ahead = radius * at.step;
    int sum = 0;
    for (int i = begin - ahead; i <= begin + ahead; i += at.step) {
        sum += columns[i];
    }
    int x = begin / at.step;
    for (int i = begin; i < end; i += at.step, ++x) {
        const int pixels = rows * (std::min(x + radius, at.width - 1) - std::max(x - radius, 0) + 1);
        result[i - begin] = static_cast<BYTE>(sum / pixels);
        sum += columns[i + ahead + at.step] - columns[i - ahead];
    }
}

void MeanSamples(const void* context, const FilterRow& at, Plane plane, int begin, int count, BYTE* result) {
    auto& box = *static_cast<BoxMean*>(const_cast<void*>(context)); // of this call, and no other's
    const PlaneSums sums = SumsOf(at, plane, box.radius);
    SumColumns(at, plane, box, sums.columns);

    const int end = begin + count;
    const int whole = std::clamp(box.radius * at.step, begin, end); // the first whole box
    const int cut = std::clamp((at.width - box.radius) * at.step, whole, end);
    const int boxPixels = RowsOfBox(at, box.radius) * (2 * box.radius + 1);
    if (whole < cut && box.radius <= kMaxNarrowRadius) {
        TheBoxMeanKernels().narrowMeans(sums.columns + whole, box.radius, at.step, boxPixels, cut - whole,
                                        result + (whole - begin));
    } else if (whole < cut) {
        const int reach = box.radius * at.step;
        TheBoxMeanKernels().runningSums(sums.columns + whole - reach, at.step, cut - whole + 2 * reach, sums.running);
        TheBoxMeanKernels().wideMeans(sums.running, 2 * reach + at.step, boxPixels, cut - whole,
                                      result + (whole - begin));
    }
    for (int channel = 0; channel < at.step; ++channel) {
        CutMeans(at, sums.columns, box.radius, begin + channel, whole, result + channel);
        CutMeans(at, sums.columns, box.radius, cut + channel, end, result + (cut - begin) + channel);
    }
}

} // namespace

HGLOBAL Shade(const AreaArguments& area, BYTE radius, const Progress& progress) {
    BoxMean box = {std::clamp<int>(radius, 1, kMaxRadius)};
    Filter filter;
    filter.reach = box.radius + 1; // the row that leaves the box is still there
    filter.context = &box;
    filter.filterSamples = MeanSamples;
    filter.endsAtBorder = true;
    filter.scratchBytes = sizeof(WORD) + sizeof(DWORD);
    return ApplyFilter(area, filter, progress);
}

} // namespace qv8
