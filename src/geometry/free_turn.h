// Turns by any angle: every pixel of the result is looked up in the source.
#pragma once

#include "frame/progress.h"
#include "geometry/rotation_mapping.h"
#include "geometry/rotation_planes.h"

namespace qv8 {

// `frame` is the result's. Blends when the options say smooth, which the picture must be fit for. False when cancelled.
bool TurnFreely(Plane& image, Plane* mask, const Turn& turn, const CentredFrame& frame, const RotationOptions& options,
                const Progress& progress);

} // namespace qv8
