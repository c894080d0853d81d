// Reads rows of a picture of any depth as planar colours.
#pragma once

#include "frame/pixel_kernels.h"

namespace qv8 {

struct ColourReader {
    DibView picture;
    PixelFormat format;  // of a 16-, 24- or 32-bit picture
    FullPalette palette; // of any other
};

ColourReader MakeColourReader(const DibView& picture);

// Reads `count` pixels of a row from `column` on. In 1- and 4-bit pictures the column is a multiple of 8.
void ReadColours(const ColourReader& reader, int row, int column, int count, const PlanarRow& result);

} // namespace qv8
