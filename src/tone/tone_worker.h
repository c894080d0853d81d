// The worker of every effect that changes colours one by one: tone curves, chroma.
#pragma once

#include "area/area.h"
#include "frame/progress.h"
#include "pixels/pixel_format.h"

namespace qv8 {

// What such an effect does to a colour.
struct ToneEffect {
    const void* context;
    // Rewrites `count` packed pixels from `source` to `result`, every byte of them.
    void (*pixels)(const void* context, const PixelFormat& format, const BYTE* source, BYTE* result, int count);
    // The new colour of a colour-table entry; the reserved byte does not count.
    RGBQUAD (*entry)(const void* context, RGBQUAD colour);
    // Pixels are rewritten without a floating-point number.
    bool isFloatless = false;
};

// Rewrites planar channels in place.
using PlanarTone = void (*)(const void* context, const PlanarRow& row, int count);

// The `pixels` of an effect that knows planar channels only. Copies what a pixel has beside its channels.
void ApplyPlanarTone(const void* context, PlanarTone tone, const PixelFormat& format, const BYTE* source, BYTE* result,
                     int count);

// Applies the effect to the colour table of a picture that has one, or to the pixels of the area of another.
// Statuses as frame/status.h has them, but 5 for a bad area only.
HGLOBAL ApplyTone(const AreaArguments& areaArguments, const ToneEffect& effect, const Progress& progress);

} // namespace qv8
