// How often colours occur, in cells of 6 bits per channel.
#pragma once

#include <cstdint>

#include "frame/rows.h"
#include "pixels/colour_reader.h"

namespace qv8 {

constexpr int kCellLevels = 64; // on each axis: 0 blue, 1 green, 2 red
constexpr int kCells = kCellLevels * kCellLevels * kCellLevels;

// The cell of three 6-bit values.
constexpr int CellIndex(int blue, int green, int red) {
    return blue << 12 | green << 6 | red;
}

// A box of cells: its levels on each axis, both ends included.
struct CellBox {
    BYTE low[3];
    BYTE high[3];

    int Extent(int axis) const {
        return high[axis] - low[axis];
    }
};

// Counts of cells. After AccumulateHistogram each holds the sum over all cells whose levels are no greater on any axis,
// so that the count of any box takes eight reads.
struct Histogram {
    LockedBlock block;

    std::uint32_t* Counts() const {
        return block.As<std::uint32_t>();
    }
};

// Counts the pixels of a picture. A channel's cell is value * 63 / 255. Returns an empty histogram with status 1 or 3.
Histogram CountColours(const ColourReader& reader, const PlanarRow& rowBuffer, const Progress& progress);

void AccumulateHistogram(const Histogram& histogram);

// Pixels within a box, from an accumulated histogram.
std::uint32_t CountOf(const Histogram& histogram, const CellBox& box);

} // namespace qv8
