// Selection: cutting an area out of a picture as a new picture with its mask.
#pragma once

#include "area/area.h"
#include "frame/progress.h"

namespace qv8 {

// The area of the given shape over a background, and the shape's mask. {0, 0} with the status set when it fails.
ImageSet SelectImage(const AreaArguments& area, const RGBQUAD& background, const Progress& progress);

} // namespace qv8
