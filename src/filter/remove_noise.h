// Medians of the 3 x 3 neighbourhood: of whole pixels by luminance, or of each channel that stands out.
#pragma once

#include "filter/filter_frame.h"
#include "frame/progress.h"

namespace qv8 {

// QV8RemoveNoise. Returns a new picture, or 0 with its status set.
HGLOBAL RemoveNoise(const AreaArguments& area, BYTE mode, BYTE sensitivity, const Progress& progress);

} // namespace qv8
