// The mean of a square around each pixel, cut at the picture's border.
#pragma once

#include "filter/filter_frame.h"
#include "frame/progress.h"

namespace qv8 {

// QV8Shade. `radius` is in pixels, clamped to 1..20. Statuses as ApplyFilter.
HGLOBAL Shade(const AreaArguments& area, BYTE radius, const Progress& progress);

} // namespace qv8
