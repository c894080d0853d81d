// Windows bitmap files (BMP) of 1, 4, 8, 16, 24 and 32 bits, read into picture blocks and written from them without
// loss.
#ifndef QV8_PICTURES_BMP_H
#define QV8_PICTURES_BMP_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "pictures/picture.h"

inline constexpr std::size_t kBmpFileHeaderBytes = 14;

struct BmpReading {
    Picture picture;
    std::string error; // empty when there is a picture
};

// Whether the bytes begin like a BMP file.
bool LooksLikeBmp(const BYTE* bytes, std::size_t size);

// Reads a whole file in memory; whatever the bytes, this ends with a sound picture or with the reason why there is
// none. The picture has a 40-byte header and its rows stand bottom-up, whatever form the file has. Pictures of more
// than `maxPixels` pixels are refused.
BmpReading ReadBmp(const BYTE* bytes, std::size_t size, std::uint64_t maxPixels);

// What stands in a file before the picture block; behind it the block is written as it is.
std::array<BYTE, kBmpFileHeaderBytes> BmpFileHeader(const LockedPicture& picture);

#endif
