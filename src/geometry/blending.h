// Blends the four pixels around a place, at every depth that has levels to blend.
#pragma once

#include "geometry/rotation_kernels.h"
#include "geometry/rotation_planes.h"
#include "pixels/grey_ramp.h"

namespace qv8 {

struct Blending {
    PixelFormat format; // of 16, 24 and 32 bits
    GreyRamp ramp;      // of 8 bits
    RGBQUAD background; // what lies outside the picture
};

Blending BlendingOf(const Plane& plane, const RGBQUAD& background);

// Blends `count` pixels of a plane into packed ones.
void BlendPixels(const Blending& blending, const Plane& plane, const Places& places, int count, BYTE* result);

} // namespace qv8
