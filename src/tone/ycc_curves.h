// Curves on luminance and the two colour differences: gamma, level, inversion, and the strength of colour.
#pragma once

#include "area/area.h"

namespace qv8 {

HGLOBAL YccGamma(const ImageSet& target, const AreaArguments& area, double gammaY, double gammaCr, double gammaCb,
                 DWORD progressOwner);

HGLOBAL YccLevel(const ImageSet& target, const AreaArguments& area, LONG levelY, LONG levelCr, LONG levelCb,
                 DWORD progressOwner);

HGLOBAL YccRev(const ImageSet& target, const AreaArguments& area, bool invertY, bool invertCr, bool invertCb,
               DWORD progressOwner);

// `chroma` is a change in percent, clamped to -100..1000.
HGLOBAL Chroma(const ImageSet& target, const AreaArguments& area, LONG chroma, DWORD progressOwner);

} // namespace qv8
