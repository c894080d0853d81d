// Whole pictures turned grey.
#pragma once

#include "frame/progress.h"
#include "pixels/dib.h"

namespace qv8 {

// QV8SetGray. True-colour pictures keep their depth; those with a colour table get the full grey ramp of their depth.
// Statuses 1, 3 and 7.
HGLOBAL SetGray(HGLOBAL image, const Progress& progress);

} // namespace qv8
