// Curves on red, green and blue: gamma, level, inversion.
#pragma once

#include "area/area.h"
#include "frame/caller.h"

namespace qv8 {

HGLOBAL RgbGamma(const ImageSet& target, const AreaArguments& area, double gammaRed, double gammaGreen,
                 double gammaBlue, const Caller& caller);

HGLOBAL RgbLevel(const ImageSet& target, const AreaArguments& area, LONG levelRed, LONG levelGreen, LONG levelBlue,
                 const Caller& caller);

HGLOBAL RgbRev(const ImageSet& target, const AreaArguments& area, bool invertRed, bool invertGreen, bool invertBlue,
               const Caller& caller);

} // namespace qv8
