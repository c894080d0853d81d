// Runs of one pixel over and over.
#pragma once

#include <cstddef>

#include "frame/dib.h"

namespace qv8 {

// One pixel of a colour in the picture's own format, of a picture with a table the index of the nearest entry. A fourth
// byte is 0.
void WritePixel(const DibView& picture, const RGBQUAD& colour, BYTE (&pixel)[4]);

// One pixel of 8, 16, 24 or 32 bits, or a byte of smaller ones, as many times as fit.
struct PixelPattern {
    static constexpr std::size_t kBytes = 3072; // whole pixels at any of these sizes
    BYTE bytes[kBytes];
};

PixelPattern RepeatPixel(const BYTE* pixel, std::size_t pixelBytes);

// Writes the pattern from its start on.
void FillPixels(const PixelPattern& pattern, BYTE* result, std::size_t bytes);

} // namespace qv8
