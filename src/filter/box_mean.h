// The mean of a square around each pixel, cut at the picture's border.
#pragma once

#include "filter/filter_frame.h"
#include "frame/progress.h"

namespace qv8 {

// QV8Shade. Returns a new picture, or 0 with its status set.
HGLOBAL Shade(const AreaArguments& area, BYTE radius, const Progress& progress);

} // namespace qv8
