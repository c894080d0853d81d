// How a picture is scaled, turned and placed so that two of its points meet two points of another.
#pragma once

#include "pixels/dib.h"

namespace qv8 {

// Two points of a picture, rows counted from the bottom.
struct Segment {
    int x1;
    int y1;
    int x2;
    int y2;
};

// Moves points given by rows from the top to the nearest places inside the picture.
Segment SegmentInside(const DibView& picture, POINT first, POINT second);

struct PanoramaFit {
    int width; // of the scaled picture; below 1 when there is none
    int height;
    int angle; // in hundredths of a degree
    int x;     // where its middle lies in the base, `y` from the top
    int y;
};

// `onBase` are the points in the base, `onAdded` those in the added picture.
PanoramaFit FitPanorama(const DibView& base, const Segment& onBase, const DibView& added, const Segment& onAdded);

} // namespace qv8
