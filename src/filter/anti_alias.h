// The mean of each pixel and its left and right neighbours.
#pragma once

#include "filter/filter_frame.h"
#include "frame/progress.h"

namespace qv8 {

// QV8AntiAlias. Returns a new picture, or 0 with its status set.
HGLOBAL AntiAlias(const AreaArguments& area, const Progress& progress);

} // namespace qv8
