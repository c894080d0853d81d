// Turns pictures by any angle.
#pragma once

#include "frame/progress.h"
#include "geometry/turned_picture.h"

namespace qv8 {

// The turned picture and mask, or an empty pair with the status set.
ImageSet RotatePicture(const ImageSet& handles, const RotationOptions& wanted, const Progress& whole);

} // namespace qv8
