// The mean of each pixel and its left and right neighbours.
#pragma once

#include "filter/filter_frame.h"
#include "frame/progress.h"

namespace qv8 {

// QV8AntiAlias. Statuses as ApplyFilter.
HGLOBAL AntiAlias(const AreaArguments& area, const Progress& progress);

} // namespace qv8
