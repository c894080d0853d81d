// Rectangular blocks in their mean colour.
#pragma once

#include "area/area.h"
#include "frame/caller.h"

namespace qv8 {

// QV8Mosaic. Returns a new picture, or 0 with its status set.
HGLOBAL Mosaic(const ImageSet& target, const AreaArguments& area, int blockWidth, int blockHeight,
               const Caller& caller);

} // namespace qv8
