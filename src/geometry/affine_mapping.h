// Where the pixels of a four-cornered area go when it is straightened. Rows count from the top here. All arithmetic is
// in double precision, in the order written, so that every build puts the same pixels in the same places.
#pragma once

#include "pixels/dib.h"

namespace qv8 {

// The corners by their place. All of them lie in the picture, so that differences fit an int.
struct Corners {
    POINT lowerLeft;
    POINT upperLeft;
    POINT upperRight;
    POINT lowerRight;
};

// `points` are four in any order; those outside the picture are moved to its edge.
Corners CornersOf(const POINT* points, const DibView& picture);

// The largest upright rectangle between the edges; its sides are below 1 when there is none.
struct UprightSize {
    int width;
    int height;
};
UprightSize SizeBetween(const Corners& corners);

// A bilinear patch. Points are told in coordinates of its own, s and t: from the lower left corner s times the lower
// edge and t times the left edge.
struct Patch {
    double originX;
    double originY;
    double rightX; // the lower edge
    double rightY;
    double upX; // the left edge
    double upY;
    double determinant;
    double a; // s and t of the upper right corner
    double b;
    double width; // of the result
    double height;
};

// False when the lower and the left edge are on one line.
bool MakePatch(const Corners& corners, const UprightSize& size, Patch& patch);

} // namespace qv8
