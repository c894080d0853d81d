// Edges as grey levels: the length of the gradient in luminance or in one channel.
#pragma once

#include "filter/filter_frame.h"
#include "frame/progress.h"

namespace qv8 {

// QV8Outline. Returns a new picture, or 0 with its status set.
HGLOBAL Outline(const AreaArguments& area, BYTE channel, BYTE edgeOperator, BYTE gain, const Progress& progress);

} // namespace qv8
