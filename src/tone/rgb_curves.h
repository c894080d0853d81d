// Curves on red, green and blue: gamma, level, inversion.
#pragma once

#include "area/area.h"

namespace qv8 {

HGLOBAL RgbGamma(const ImageSet& target, const AreaArguments& area, double gammaRed, double gammaGreen,
                 double gammaBlue, DWORD progressOwner);

HGLOBAL RgbLevel(const ImageSet& target, const AreaArguments& area, LONG levelRed, LONG levelGreen, LONG levelBlue,
                 DWORD progressOwner);

HGLOBAL RgbRev(const ImageSet& target, const AreaArguments& area, bool invertRed, bool invertGreen, bool invertBlue,
               DWORD progressOwner);

} // namespace qv8
