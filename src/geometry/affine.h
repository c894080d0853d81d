// Straightens a four-cornered area of a picture into an upright one.
#pragma once

#include "frame/progress.h"
#include "pixels/dib.h"

namespace qv8 {

// The straightened picture, or null. `corners` are four points in any order, rows counted from the top. No status is
// set when the edges at the lower left corner are on one line.
HGLOBAL StraightenPicture(HGLOBAL image, const POINT* corners, const Progress& progress);

} // namespace qv8
