// Curves on luminance and the two colour differences: gamma, level, inversion, and the strength of colour.
#pragma once

#include "area/area.h"
#include "frame/caller.h"

namespace qv8 {

HGLOBAL YccGamma(const ImageSet& target, const AreaArguments& area, double gammaY, double gammaCr, double gammaCb,
                 const Caller& caller);

HGLOBAL YccLevel(const ImageSet& target, const AreaArguments& area, LONG levelY, LONG levelCr, LONG levelCb,
                 const Caller& caller);

HGLOBAL YccRev(const ImageSet& target, const AreaArguments& area, bool invertY, bool invertCr, bool invertCb,
               const Caller& caller);

// `chroma` is a change in percent, clamped to -100..1000.
HGLOBAL Chroma(const ImageSet& target, const AreaArguments& area, LONG chroma, const Caller& caller);

} // namespace qv8
