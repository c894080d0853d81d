// Runs of one pixel over and over.
#pragma once

#include <cstddef>

#include "pixels/dib.h"

namespace qv8 {

// A colour as a pixel of a layout that is not indexed, unused bytes 0, from the lowest byte on.
DWORD PackColour(const PixelLayout& layout, const RGBQUAD& colour);

// One pixel of 8, 16, 24 or 32 bits, or a byte of smaller ones, as many times as fit.
struct PixelPattern {
    static constexpr std::size_t kBytes = 768; // whole pixels at any of these sizes
    BYTE bytes[kBytes];
};

PixelPattern RepeatPixel(const BYTE* pixel, std::size_t pixelBytes);

// Repeats the first `known` bytes until there are `count`.
void RepeatBytes(BYTE* bytes, std::size_t known, std::size_t count);

// A colour in the picture's own layout, in a picture with a table the index of the nearest entry: one by one, as copied
// pixels are, or packed as in a row.
PixelPattern PatternOf(const DibView& picture, const RGBQUAD& colour);
PixelPattern PackedPatternOf(const DibView& picture, const RGBQUAD& colour);

// Writes the pattern from its start on.
void FillPixels(const PixelPattern& pattern, BYTE* result, std::size_t bytes);

// Fills all pixels of a row of the picture with a packed pattern; what is behind the last one becomes 0.
void FillRow(const PixelPattern& packed, const DibView& picture, BYTE* row);

} // namespace qv8
