// Masks of one side of a line.
#pragma once

#include "area/area_mask.h"
#include "compose/panorama_fit.h"

namespace qv8 {

enum class SeamSide { kFirst, kSecond };

// A mask of that size with all pixels on one side of the line through both points, and the line itself. The first side
// is the one on the left of the way from the first point to the second. Returns an unlocked block; null with status 2
// or 3 when it fails.
GlobalBlock CreateSeamMask(int width, int height, const Segment& points, SeamSide side);

} // namespace qv8
