// Edges as grey levels: the length of the gradient in luminance or in one channel.
#pragma once

#include "filter/filter_frame.h"
#include "frame/progress.h"

namespace qv8 {

// QV8Outline. `channel` and `edgeOperator` are numbers of qv8effect.h; the length of the gradient, in levels, is
// multiplied by `gain`, 0..100, clamped. Statuses as ApplyFilter, 5 also for another channel.
HGLOBAL Outline(const AreaArguments& area, BYTE channel, BYTE edgeOperator, BYTE gain, const Progress& progress);

} // namespace qv8
