// Conversion between colour depths.
#pragma once

#include "frame/progress.h"
#include "pixels/dib.h"

namespace qv8 {

// The worker of QV8ConvertColor. A zero handle returns 0 before any status is set.
HGLOBAL ConvertColor(HGLOBAL image, WORD bitDepth, bool fixedPalette, bool dither, BYTE threshold,
                     const Progress& progress);

// Bits per pixel of a target depth, which may be QV8_DEPTH_GREY.
constexpr int BitsOfDepth(int depth) {
    return depth == QV8_DEPTH_GREY ? 8 : depth;
}

// A new picture of the source's size and resolution at `depth`, with room for `paletteSize` colours, which the caller
// writes. `colorsUsed` goes into the header. Sets status 3 when it fails.
NewPicture NewConverted(const DibView& source, int depth, std::uint32_t paletteSize, std::uint32_t colorsUsed,
                        InitialPixels pixels);

// Rewrites a 16-, 24- or 32-bit picture as another of these depths. False when cancelled.
bool ConvertTrueColour(const DibView& source, const NewPicture& result, const Progress& progress);

// Rewrites a 1-, 4- or 8-bit picture at a greater depth, or as grey levels. False when cancelled.
bool ExpandPalette(const DibView& source, int depth, const NewPicture& result, const Progress& progress);

} // namespace qv8
