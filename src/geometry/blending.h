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

// The kernel that blends the packed pixels of a picture; null where it has to be done channel by channel.
inline auto PackedBlendOf(const DibView& picture) {
    const RotationKernels& kernels = TheRotationKernels();
    const auto codec = picture.layout->codec;
    return picture.IsPaletted()           ? nullptr
           : codec == &PixelKernels::bgr  ? kernels.blendPacked24
           : codec == &PixelKernels::bgrx ? kernels.blendPacked32
                                          : nullptr;
}

// Whether all of these places, up to kPlaces, are in the picture.
bool AreInside(const DibView& picture, const int* columns, const int* rows, int count);

// Places moved to the nearest ones in a picture.
struct ClampedPlaces {
    int columns[kPlaces];
    int rows[kPlaces];
    BYTE wereInside[kPlaces]; // 1, or 0 for one that was moved
};
void ClampPlaces(const DibView& picture, const int* columns, const int* rows, int count, ClampedPlaces& places);

// The places, of those from 0 to before `count` along a line, that have all their neighbours in the picture, and
// behind those a byte more to read: so not in the last row of memory.
Span PlacesWithin(const DibView& picture, const Places& places, int count);

} // namespace qv8
