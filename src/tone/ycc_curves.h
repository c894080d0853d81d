// Curves on luminance and the two colour differences: gamma, level, inversion, and the strength of colour.
#pragma once

#include "area/area.h"
#include "frame/progress.h"

namespace qv8 {

HGLOBAL YccGamma(const AreaArguments& area, double gammaY, double gammaCr, double gammaCb, const Progress& progress);

HGLOBAL YccLevel(const AreaArguments& area, LONG levelY, LONG levelCr, LONG levelCb, const Progress& progress);

HGLOBAL YccRev(const AreaArguments& area, bool invertY, bool invertCr, bool invertCb, const Progress& progress);

// `chroma` is a change in percent, clamped to -100..1000.
HGLOBAL Chroma(const AreaArguments& area, LONG chroma, const Progress& progress);

} // namespace qv8
