// Reads rows of a picture of any depth as planar colours.
#pragma once

#include "pixels/pixel_format.h"

namespace qv8 {

struct ColourReader {
    DibView picture;
    PixelFormat format;
    FullPalette palette; // of a picture with a table
};

ColourReader MakeColourReader(const DibView& picture);

// Reads `count` pixels of a row from `column` on.
void ReadColours(const ColourReader& reader, int row, int column, int count, const PlanarRow& result);

// The colours of pixels of such a picture that were copied from it, indices one in each byte.
void DecodePixels(const ColourReader& reader, const BYTE* pixels, int count, const PlanarRow& result);

// As ReadColours, as packed 24-bit pixels.
void ReadPixels24(const ColourReader& reader, int row, int column, int count, BYTE* result);

// The same where they lie, or converted into the room where they are of another kind.
const BYTE* Pixels24(const ColourReader& reader, int row, int column, int count, BYTE* room);

} // namespace qv8
