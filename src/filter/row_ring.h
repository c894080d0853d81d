// The rows around the one that is being filtered, each decoded once, with the pixels at the border repeated beyond it.
#pragma once

#include "filter/filter_frame.h"
#include "pixels/pixel_format.h"

namespace qv8 {

constexpr int kMaxReach = 21;

enum class RowKind {
    kGrey,   // one plane of grey levels
    kPacked, // one plane of 24-bit pixels as they are
    kPlanar, // three planes
};

struct RowRing {
    DibView source;
    RowKind kind = RowKind::kPlanar;
    PixelFormat format;
    bool luminance = false;
    bool luminanceAlone = false; // straight from packed pixels

    LockedBlock memory;
    int reach = 0;
    int slots = 0;       // rows that are kept
    int rowsInPlace = 0; // those below are read where they are
    std::size_t stride = 0;
    BYTE* planes[kPlaneCount] = {}; // the first row's column 0
    BYTE* results[3] = {};          // one row each
    int nextRow = 0;                // rows from here on are not decoded yet

    const BYTE* pointers[kPlaneCount][2 * kMaxReach + 1];
    FilterRow at;
};

// How many rows of a 24-bit picture kernels may read where they are, with `reach` pixels around: not the last ones,
// behind which memory may end before what kernels read.
int RowsToRead(const DibView& picture, int reach);

// Makes the ring for a filter. Sets status 3 when memory is short.
bool MakeRowRing(const DibView& source, const Filter& filter, int resultWidth, RowRing& ring);

// The surroundings of a row; rows are asked for from the lowest to the highest.
const FilterRow& MoveTo(RowRing& ring, int row);

} // namespace qv8
