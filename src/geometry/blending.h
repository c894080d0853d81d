// Blends the four pixels around a place, at every depth that has levels to blend.
#pragma once

#include "geometry/rotation_kernels.h"
#include "geometry/turned_picture.h"
#include "pixels/pixel_format.h"

namespace qv8 {

struct Blending {
    PixelFormat format;
    RGBQUAD background; // what lies outside the picture, of a grey ramp its level in blue
};

Blending BlendingOf(const TurnedPicture& picture, const RGBQUAD& background);

// Blends `count` pixels of a picture into packed ones.
void BlendPixels(const Blending& blending, const TurnedPicture& picture, const Places& places, int count, BYTE* result);

} // namespace qv8
