// Windows bitmap files (BMP) of 1, 4, 8, 16, 24 and 32 bits, read into picture blocks and written from them without
// loss.
#ifndef QV8_PICTURES_BMP_H
#define QV8_PICTURES_BMP_H

#include "pictures/codec.h"

inline constexpr std::size_t kBmpFileHeaderBytes = 14;

bool IsBmp(ByteView file);

// Whatever the bytes, this ends with a sound picture or with a Refusal. The picture has a 40-byte header and its rows
// stand bottom-up, whatever form the file has.
LoadedPicture ReadBmp(ByteView file, const ReadOptions& options);

// Puts what run-length compression (RLE4, RLE8) makes of `packed` into pixels that are 0 before. Pixels that it leaves
// out stay 0. Throws a Refusal when it goes beyond the picture or ends early.
void DecodeRunLengths(ByteView packed, const BITMAPINFOHEADER& header, BYTE* pixels, std::size_t stride);

#endif
