// Whole pictures turned grey.
#pragma once

#include "frame/progress.h"
#include "pixels/dib.h"

namespace qv8 {

// True-colour pictures keep their depth; palette pictures get the full grey ramp of their depth.
HGLOBAL SetGray(HGLOBAL image, const Progress& progress);

} // namespace qv8
