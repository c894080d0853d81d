// Scaling by blending pixels, in planes of levels whatever the layout.
#pragma once

#include "frame/progress.h"
#include "geometry/resize_copy.h"
#include "pixels/dib.h"

namespace qv8 {

// Blends the source into the zeroed rows of the result, a grey ramp or a true-colour picture.
// False when cancelled or memory is short; the status is set.
bool ResizeSmoothly(const ResizeTask& task, const Progress& progress);

} // namespace qv8
