// Whole pictures turned grey.
#pragma once

#include "frame/caller.h"
#include "pixels/dib.h"

namespace qv8 {

// True-colour pictures keep their depth; palette pictures get the full grey ramp of their depth.
HGLOBAL SetGray(HGLOBAL image, const Caller& caller);

} // namespace qv8
