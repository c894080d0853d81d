// Turns by any angle: every pixel of the result is looked up in the source.
#pragma once

#include "frame/progress.h"
#include "geometry/rotation_mapping.h"
#include "geometry/turned_picture.h"

namespace qv8 {

// `bounds` is the result's. Blends when the options say smooth, which the picture must be fit for. False when
// cancelled.
bool TurnFreely(TurnedPicture& image, TurnedPicture* mask, const Turn& turn, const CentredRect& bounds,
                const RotationOptions& options, const Progress& progress);

} // namespace qv8
