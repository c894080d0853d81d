// Turns, and any other linear maps: every pixel of the result is looked up in the source.
#pragma once

#include "frame/progress.h"
#include "geometry/rotation_mapping.h"
#include "geometry/turned_picture.h"

namespace qv8 {

// Writes the result of each picture, which lies at `bounds` around the centre. `back` leads from there to the source.
// Blends when the options say smooth, which the picture must be fit for; their angle does not count. False when
// cancelled.
bool MapPicture(TurnedPicture& image, TurnedPicture* mask, const LinearMap& back, const CentredRect& bounds,
                const RotationOptions& options, const Progress& progress);

} // namespace qv8
