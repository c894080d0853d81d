// Blends the four pixels around a place, at every depth that has levels to blend.
#pragma once

#include "geometry/rotation_kernels.h"
#include "geometry/rotation_planes.h"
#include "pixels/pixel_format.h"

namespace qv8 {

struct Blending {
    PixelFormat format;
    RGBQUAD background; // what lies outside the picture, of a grey ramp its level in blue
};

Blending BlendingOf(const Plane& plane, const RGBQUAD& background);

// Blends `count` pixels of a plane into packed ones.
void BlendPixels(const Blending& blending, const Plane& plane, const Places& places, int count, BYTE* result);

} // namespace qv8
