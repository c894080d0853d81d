// The arithmetic of a turned row, several pixels at a time.
#pragma once

#include "geometry/rotation_mapping.h"
#include "pixels/pixel_kernels.h"

namespace qv8 {

constexpr int kPlaces = 256; // worked on at once; a multiple of 8

// From a centred coordinate to one of the source's own: counted from its first column or row, or from its last one.
struct Direction {
    int exchange; // 0, or -1 to count backwards
    int base;
    float sign; // 1 or -1

    // For a side whose first place has the centred coordinate `first`.
    static Direction Of(std::int64_t first, std::int64_t size, bool backwards) {
        return backwards ? Direction{-1, static_cast<int>(size + first), -1.0F}
                         : Direction{0, static_cast<int>(-first), 1.0F};
    }
    int PlaceOf(int centred) const {
        return (centred ^ exchange) + base;
    }
    int Step(int step) const {
        return exchange == 0 ? step : -step;
    }
};

struct Directions {
    Direction column;
    Direction row;

    static Directions Of(const CentredRect& picture, bool mirror, bool flip) {
        return {Direction::Of(picture.firstColumn, picture.width, mirror),
                Direction::Of(picture.firstRow, picture.height, flip)};
    }
};

// Where pixels come from; for blending, the places next to those and how much of them is taken.
struct Places {
    int columns[kPlaces];
    int rows[kPlaces];
    int nextColumns[kPlaces];
    int nextRows[kPlaces];
    float columnWeights[kPlaces];
    float rowWeights[kPlaces];
};

struct RotationKernels {
    // The places of `count` pixels of the result from x on. All of them lie in the source.
    void (*findPlaces)(const SourceLines& lines, const Directions& directions, int x, int count, Places& places);
    // The same with neighbours, which may lie outside.
    void (*findNeighbours)(const SourceLines& lines, const Directions& directions, int x, int count, Places& places);
    // Blends packed pixels of 24 or 32 bits straight from the picture, of places that PlacesWithin (blending.h) has
    // found. The fourth bytes of results are worth nothing.
    void (*blendPacked24)(const DibView& picture, const Places& places, int count, BYTE* result);
    void (*blendPacked32)(const DibView& picture, const Places& places, int count, BYTE* result);
    // Blends one channel of the pixels, of those beside them, of those above or below and of the diagonal ones.
    void (*blend)(const Places& places, const BYTE* pixel, const BYTE* beside, const BYTE* above, const BYTE* diagonal,
                  int count, BYTE* result);
};

const RotationKernels& TheRotationKernels();

} // namespace qv8
