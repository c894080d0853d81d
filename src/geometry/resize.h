// Scaling to a new size, a picture and its mask together.
#pragma once

#include "frame/progress.h"

namespace qv8 {

// Scales the picture and its mask, when there is one. `smooth` blends pixels where levels are known: at 16, 24 and 32
// bits and in grey ramps. Sets status 1, 3, 5 or 7 when it fails.
ImageSet ResizePicture(const ImageSet& source, int width, int height, bool smooth, const Progress& progress);

} // namespace qv8
