// Copies pixels as they are, one by one from anywhere in a picture: one way for each size of a pixel. Pixels of 1 and 4
// bits are unpacked to one index in each byte.
#pragma once

#include "pixels/dib.h"

namespace qv8 {

struct PixelUnit {
    // Pixels from (column, row) on, each a step further.
    void (*copyLine)(const DibView& picture, int column, int row, int columnStep, int rowStep, int count, BYTE* result);
    // Pixels of one row at given columns.
    void (*gatherColumns)(const BYTE* row, const int* columns, int count, BYTE* result);
    // Pixels at given places.
    void (*gather)(const DibView& picture, const int* columns, const int* rows, int count, BYTE* result);
    // The other way: writes copied pixels to given places in turn, and to those right of and above them where the
    // result goes on. Pixels with a negative column are left out.
    void (*scatter)(const BYTE* pixels, const int* columns, const int* rows, int count, const NewPicture& result);
};

extern const PixelUnit kUnitOf1Bit;
extern const PixelUnit kUnitOf4Bits;
extern const PixelUnit kUnitOf1Byte;
extern const PixelUnit kUnitOf2Bytes;
extern const PixelUnit kUnitOf3Bytes;
extern const PixelUnit kUnitOf4Bytes;

// Stores copied pixels in a row from `column` on, which is a multiple of 8; `pixels` may be their place in the row.
void StorePixels(const DibView& result, const BYTE* pixels, int count, BYTE* row, int column);

// Zeroes what is behind the first `count` pixels of a row.
void ClearBehind(const DibView& result, int count, BYTE* row);

// The same behind the last pixel.
void ClearPadding(const DibView& result, BYTE* row);

} // namespace qv8
