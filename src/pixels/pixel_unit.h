// Copies pixels as they are, one by one from anywhere in a picture: one way for each size of a pixel.
#pragma once

#include "frame/dib.h"

namespace qv8 {

struct PixelUnit {
    int bytes; // of a copied pixel: pixels of 1 and 4 bits are spread out to one index in each byte

    // Pixels from (column, row) on, each a step further.
    void (*copyLine)(const DibView& picture, int column, int row, int columnStep, int rowStep, int count, BYTE* result);
    // Pixels of one row at given columns.
    void (*copyColumns)(const BYTE* row, const int* columns, int count, BYTE* result);
    // Pixels at given places.
    void (*copyPlaces)(const DibView& picture, const int* columns, const int* rows, int count, BYTE* result);
    // The other way: writes copied pixels to given places in turn, and to those right of and above them where the
    // result goes on. Pixels with a negative column are left out.
    void (*spread)(const BYTE* pixels, const int* columns, const int* rows, int count, const NewPicture& result);
};

PixelUnit PixelUnitOf(int bitCount);

// Stores copied pixels in a row from `column` on, which is a multiple of 8; `pixels` may be their place in the row.
void StorePixels(const DibView& result, const BYTE* pixels, int count, BYTE* row, int column);

// Zeroes what is behind the last pixel of a row.
void ClearPadding(const DibView& result, BYTE* row);

} // namespace qv8
