// Scaling by blending pixels: channel by channel, at 24 bits all three side by side as they are stored.
#pragma once

#include "frame/progress.h"
#include "geometry/resize_copy.h"
#include "pixels/dib.h"

namespace qv8 {

// Writes all rows of the result and copies the mask. The picture is a grey ramp or has channels (CanBlend). False with
// status 1 or 3 set when it was cancelled or memory was short.
bool ResizeSmoothly(const ResizeTask& task, const Progress& progress);

} // namespace qv8
