#include "convert/median_cut.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace qv8 {
namespace {

constexpr int kMaxBoxes = 256;

CellBox SliceAt(const CellBox& box, int axis, int level) {
    CellBox slice = box;
    slice.low[axis] = slice.high[axis] = static_cast<BYTE>(level);
    return slice;
}

bool IsSliceEmpty(const Histogram& histogram, const CellBox& box, int axis, int level) {
    return CountOf(histogram, SliceAt(box, axis, level)) == 0;
}

// Cuts slices without a pixel off both ends of every axis. A box without any pixel stays as it is, its ends in order.
void Shrink(const Histogram& histogram, CellBox& box) {
    for (int axis = 0; axis != 3; ++axis) {
        if (box.low[axis] > box.high[axis]) {
            std::swap(box.low[axis], box.high[axis]);
        }
    }
    if (CountOf(histogram, box) == 0) {
        return;
    }
    for (int axis = 0; axis != 3; ++axis) {
        while (IsSliceEmpty(histogram, box, axis, box.low[axis])) {
            ++box.low[axis];
        }
        while (IsSliceEmpty(histogram, box, axis, box.high[axis])) {
            --box.high[axis];
        }
    }
}

// The axis of the largest extent; of equal ones blue before green before red.
int LongestAxis(const CellBox& box) {
    const int extents[3] = {box.Extent(0), box.Extent(1), box.Extent(2)};
    if (extents[0] < extents[1]) {
        return extents[1] < extents[2] ? 2 : 1;
    }
    return extents[0] < extents[2] ? 2 : 0;
}

// The first level of the axis that holds, together with the box's levels before it, half of the box's pixels.
int MedianLevel(const Histogram& histogram, const CellBox& box, int axis) {
    const std::uint32_t half = CountOf(histogram, box) / 2;
    CellBox part = box;
    for (int level = box.low[axis]; level < box.high[axis]; ++level) {
        part.high[axis] = static_cast<BYTE>(level);
        if (CountOf(histogram, part) >= half) {
            return level;
        }
    }
    return box.high[axis];
}

// Moves the border between two parts by one level where one of them has a single level and the other more than two.
void Balance(CellBox& low, CellBox& high, int axis) {
    const bool spareLow = low.low[axis] < low.high[axis] - 1;
    const bool spareHigh = high.low[axis] < high.high[axis] - 1;
    if (spareLow && high.low[axis] == high.high[axis]) {
        --high.low[axis];
        --low.high[axis];
    } else if (spareHigh && low.low[axis] == low.high[axis]) {
        ++low.high[axis];
        ++high.low[axis];
    }
}

// Splits at the median of the longest axis. When the median is the last level, both parts keep it.
std::pair<CellBox, CellBox> Split(const Histogram& histogram, CellBox box) {
    Shrink(histogram, box);
    const int axis = LongestAxis(box);
    const int median = MedianLevel(histogram, box, axis);
    CellBox low = box;
    CellBox high = box;
    low.high[axis] = static_cast<BYTE>(median);
    high.low[axis] = static_cast<BYTE>(median < high.high[axis] ? median + 1 : median);
    Balance(low, high, axis);
    return {low, high};
}

// Splits the box of all cells into `boxCount` ones, a power of two, by halving all boxes over and over. False when
// cancelled.
bool SplitAll(const Histogram& histogram, int boxCount, CellBox* boxes, const Progress& progress) {
    constexpr BYTE kLast = kCellLevels - 1;
    boxes[0] = {{0, 0, 0}, {kLast, kLast, kLast}};
    int split = 0;
    for (int count = 1; count < boxCount; count *= 2) {
        CellBox parents[kMaxBoxes];
        std::copy_n(boxes, count, parents);
        for (int k = 0; k != count; ++k) {
            const auto [low, high] = Split(histogram, parents[k]);
            boxes[2 * k] = low;
            boxes[2 * k + 1] = high;
            if (!progress.Report(++split, boxCount - 1)) {
                return false;
            }
        }
    }
    return true;
}

// The 8-bit channel for a box whose median and highest level on an axis are given. Dividing by h and multiplying by it
// again looks idle, but may give a little less than the median, and then truncation makes the channel one lower: the
// tables of this effect are made so.
BYTE ValueOf(int median, int high) {
    if (high == 0) {
        return 0;
    }
    const double h = high;
    return static_cast<BYTE>((median / h * h + 0.5) * 4.0);
}

void MarkCells(const CellBox& box, int index, BYTE* inverseMap) {
    const auto run = static_cast<std::size_t>(box.Extent(2)) + 1;
    for (int blue = box.low[0]; blue <= box.high[0]; ++blue) {
        for (int green = box.low[1]; green <= box.high[1]; ++green) {
            std::memset(inverseMap + CellIndex(blue, green, box.low[2]), index, run);
        }
    }
}

} // namespace

bool CutMedian(const Histogram& histogram, int boxCount, RGBQUAD* palette, BYTE* inverseMap, const Progress& progress) {
    CellBox boxes[kMaxBoxes];
    if (!SplitAll(histogram, boxCount, boxes, progress.Slice(30, 60))) {
        return false;
    }
    const Progress rest = progress.Slice(60, 70);
    for (int i = 0; i != boxCount; ++i) {
        const CellBox& box = boxes[i];
        MarkCells(box, i, inverseMap);
        BYTE values[3];
        for (int axis = 0; axis != 3; ++axis) {
            values[axis] = ValueOf(MedianLevel(histogram, box, axis), box.high[axis]);
        }
        palette[i] = {values[0], values[1], values[2], 0};
        if (!rest.Report(i, boxCount - 1)) {
            return false;
        }
    }
    return true;
}

} // namespace qv8
