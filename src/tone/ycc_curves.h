// Curves on luminance and the two colour differences: gamma, level, inversion, and the strength of colour. Pictures of
// all depths; of one with a colour table the whole table changes, whatever the area. Statuses as frame/status.h has
// them.
#pragma once

#include "area/area.h"
#include "frame/progress.h"

namespace qv8 {

// QV8YCCGamma. Strengths of the curve, 0 for none, below 0 to lighten.
HGLOBAL YccGamma(const AreaArguments& area, double gammaY, double gammaCr, double gammaCb, const Progress& progress);

// QV8YCCLevel. What is added, in levels of 0..255; any value.
HGLOBAL YccLevel(const AreaArguments& area, LONG levelY, LONG levelCr, LONG levelCb, const Progress& progress);

// QV8YCCRev.
HGLOBAL YccRev(const AreaArguments& area, bool invertY, bool invertCr, bool invertCb, const Progress& progress);

// QV8Chroma. `chroma` is a change in percent, clamped to -100..1000.
HGLOBAL Chroma(const AreaArguments& area, LONG chroma, const Progress& progress);

} // namespace qv8
