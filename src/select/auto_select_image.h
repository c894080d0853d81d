// Selection by colour: cutting an area out with a mask of the pixels that are close to a key colour.
#pragma once

#include "area/area.h"
#include "frame/progress.h"
#include "select/colour_match.h"

namespace qv8 {

// {0, 0} with the status set when it fails; status 5 for a match mode above 2 before anything else is looked at.
ImageSet AutoSelectImage(const AreaArguments& area, const RGBQUAD& key, BYTE matchMode, BYTE tolerance,
                         const Progress& progress);

} // namespace qv8
