// PNG and JPEG files in memory.
#ifndef QV8_PICTURES_PHOTO_CODEC_H
#define QV8_PICTURES_PHOTO_CODEC_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "pictures/picture.h"
#include "pictures/plain_image.h"

struct PhotoReading {
    Picture picture;
    std::string error; // empty when there is a picture
};

// Reads a PNG or JPEG file: 8 bits with a grey ramp, 24 bits, or 32 bits with alpha in the fourth byte. Pictures of
// more than `maxPixels` pixels are refused before they are decoded, and no file takes memory or time out of proportion
// to its pixels.
PhotoReading ReadPhoto(const BYTE* bytes, std::size_t size, std::uint64_t maxPixels);

// Both return no bytes when the picture is too large for the format, and throw std::bad_alloc when memory is short.
std::vector<BYTE> EncodePng(const PlainImage& image);
std::vector<BYTE> EncodeJpeg(const PlainImage& image, int quality); // 1..100; alpha is left out

#endif
