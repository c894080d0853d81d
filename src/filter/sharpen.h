// Sharpening away from the mean of the 3 x 3 neighbourhood, in luminance.
#pragma once

#include "filter/filter_frame.h"
#include "frame/progress.h"

namespace qv8 {

// QV8Sharp. `strength` is in percent, clamped to 0..100. Statuses as ApplyFilter.
HGLOBAL Sharpen(const AreaArguments& area, BYTE strength, const Progress& progress);

} // namespace qv8
