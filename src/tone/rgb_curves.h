// Curves on red, green and blue: gamma, level, inversion. Pictures of all depths; of one with a colour table the whole
// table changes, whatever the area. Statuses as frame/status.h has them.
#pragma once

#include "area/area.h"
#include "frame/progress.h"

namespace qv8 {

// QV8RGBGamma. Strengths of the curve, 0 for none, below 0 to lighten.
HGLOBAL RgbGamma(const AreaArguments& area, double gammaRed, double gammaGreen, double gammaBlue,
                 const Progress& progress);

// QV8RGBLevel. What is added, in levels of 0..255; any value.
HGLOBAL RgbLevel(const AreaArguments& area, LONG levelRed, LONG levelGreen, LONG levelBlue, const Progress& progress);

// QV8RGBRev.
HGLOBAL RgbRev(const AreaArguments& area, bool invertRed, bool invertGreen, bool invertBlue, const Progress& progress);

} // namespace qv8
