// Turns pictures by any angle.
#pragma once

#include "frame/caller.h"
#include "geometry/turned_picture.h"

namespace qv8 {

// The turned picture and mask, or an empty pair with the status set.
ImageSet RotatePicture(const ImageSet& handles, const RotationOptions& wanted, const Caller& caller);

} // namespace qv8
