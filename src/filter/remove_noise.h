// Medians of the 3 x 3 neighbourhood: of whole pixels by luminance, or of each channel that stands out.
#pragma once

#include "filter/filter_frame.h"
#include "frame/progress.h"

namespace qv8 {

// QV8RemoveNoise. `mode` 0 takes whole pixels, 1 single channels that differ from a neighbour by more than
// 255 - `sensitivity` levels, any other nothing. Statuses as ApplyFilter.
HGLOBAL RemoveNoise(const AreaArguments& area, BYTE mode, BYTE sensitivity, const Progress& progress);

} // namespace qv8
