// Which pixels of a turned picture lie on which pixels of its base. The picture turns about its middle: the last column
// halved and the height halved, both rounded down, rows counting from the bottom. The base's columns and rows are
// counted from where this middle lies.
#pragma once

#include "geometry/rotation_kernels.h"
#include "geometry/rotation_mapping.h"
#include "pixels/pixel_unit.h"

namespace qv8 {

struct PastePlacement {
    int baseWidth;
    std::int64_t middleColumn; // in the base, or anywhere around it
    std::int64_t middleRow;
    CentredRect source;
    CentredRect reach; // the turned picture lies inside of it; for free turns
    Turn turn;
    Directions directions; // of the picture's columns and rows, backwards where it is mirrored or flipped
    bool isExact;          // a turn by quarters: one step to the right is one step in the picture
    int columnStep;        // which one, but for the directions
    int rowStep;
};

// The middle of the pasted picture, mirrored and flipped and then turned by `angle`, comes to lie on column `x` and row
// `y` from the top of the base.
PastePlacement PlacePicture(const DibView& base, const DibView& pasted, int angle, bool mirror, bool flip, int x,
                            int y);

// Where to look first for the columns of the next row.
struct PasteGuesses {
    Span column;
    Span row;
};

// The columns of a row of the base that the turned picture covers.
Span CoveredColumns(const PastePlacement& placement, int row, PasteGuesses& guesses);

// A picture whose rows lie on rows of the base, not backwards: which rows and columns it covers, the place in the
// picture of the first pixel, and the step from there to that of the next row.
struct PasteLines {
    Span rows;
    Span columns;
    int firstColumn;
    int firstRow;
    int rowStep;
};

bool LaysLines(const PastePlacement& placement);
PasteLines LinesOf(const PastePlacement& placement, int baseHeight);

// The places in the picture of up to kPlaces covered pixels, of exact turns only the first; `withNeighbours` for
// blending.
void FindPastePlaces(const PastePlacement& placement, int row, int column, int count, bool withNeighbours,
                     Places& places);

// Copies the pixels at these places from the picture or its mask.
void CopyPastePixels(const PastePlacement& placement, const Places& places, const DibView& picture,
                     const PixelUnit& unit, int count, BYTE* result);

} // namespace qv8
