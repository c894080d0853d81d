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

// The filter's memory for one plane: column sums, 0 beyond the picture's border, and sums of whole boxes.
struct PlaneSums {
    WORD* columns;
    DWORD* boxes;
};

// The boxes follow the columns' right end.
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

// Sums of the boxes around samples `begin` to `end` - 1, one sliding on from the other.
void SumBoxes(const WORD* columns, int radius, int step, int begin, int end, DWORD* boxes) {
    for (int channel = 0; channel < step && begin + channel < end; ++channel) {
        DWORD sum = 0;
        for (int k = -radius; k <= radius; ++k) {
            sum += columns[begin + channel + k * step];
        }
        boxes[begin + channel] = sum;
    }
    const std::ptrdiff_t ahead = std::ptrdiff_t{radius} * step;
    const std::ptrdiff_t behind = std::ptrdiff_t{radius + 1} * step;
    for (int i = begin + step; i < end; ++i) {
        boxes[i] = boxes[i - step] + columns[i + ahead] - columns[i - behind];
    }
}

// Means of boxes that the left or right border cuts; column sums are 0 beyond it.
void CutMeans(const FilterRow& at, const WORD* columns, int radius, int begin, int end, BYTE* result) {
    const int rows = RowsOfBox(at, radius);
    for (int i = begin; i < end; ++i) {
        const int x = i / at.step;
        const int first = std::max(x - radius, 0);
        const int last = std::min(x + radius, at.width - 1);
        int sum = 0;
        for (int k = first; k <= last; ++k) {
            sum += columns[k * at.step + i % at.step];
        }
        result[i - begin] = static_cast<BYTE>(sum / (rows * (last - first + 1)));
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
        SumBoxes(sums.columns, box.radius, at.step, whole, cut, sums.boxes);
        TheBoxMeanKernels().wideMeans(sums.boxes + whole, boxPixels, cut - whole, result + (whole - begin));
    }
    CutMeans(at, sums.columns, box.radius, begin, whole, result);
    CutMeans(at, sums.columns, box.radius, cut, end, result + (cut - begin));
}

} // namespace

HGLOBAL Shade(const ImageSet& target, const AreaArguments& area, BYTE radius, DWORD progressOwner) {
    BoxMean box = {std::clamp<int>(radius, 1, kMaxRadius)};
    Filter filter;
    filter.reach = box.radius + 1; // the row that leaves the box is still there
    filter.context = &box;
    filter.samples = MeanSamples;
    filter.scratchBytes = sizeof(WORD) + sizeof(DWORD);
    return ApplyFilter(target, area, filter, progressOwner);
}

} // namespace qv8
