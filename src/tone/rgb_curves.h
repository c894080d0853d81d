// Curves on red, green and blue: gamma, level, inversion.
#pragma once

#include "area/area.h"
#include "frame/progress.h"

namespace qv8 {

HGLOBAL RgbGamma(const AreaArguments& area, double gammaRed, double gammaGreen, double gammaBlue,
                 const Progress& progress);

HGLOBAL RgbLevel(const AreaArguments& area, LONG levelRed, LONG levelGreen, LONG levelBlue, const Progress& progress);

HGLOBAL RgbRev(const AreaArguments& area, bool invertRed, bool invertGreen, bool invertBlue, const Progress& progress);

} // namespace qv8
