// Rectangular blocks in their mean colour.
#pragma once

#include "area/area.h"
#include "frame/progress.h"

namespace qv8 {

// QV8Mosaic. Returns a new picture, or 0 with its status set.
HGLOBAL Mosaic(const AreaArguments& area, int blockWidth, int blockHeight, const Progress& progress);

} // namespace qv8
