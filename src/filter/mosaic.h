// Rectangular blocks in their mean colour.
#pragma once

#include "area/area.h"
#include "frame/progress.h"

namespace qv8 {

// QV8Mosaic, for pictures of all depths. Blocks in pixels, from the corner of the area on; 1 for what is below.
// Statuses as frame/status.h has them, 5 also when both sides of a block are below 2.
HGLOBAL Mosaic(const AreaArguments& area, int blockWidth, int blockHeight, const Progress& progress);

} // namespace qv8
