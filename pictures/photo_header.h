// What a PNG or JPEG file says about itself. It is looked at before decoding, because a file of a few bytes can ask for
// gigabytes of memory or for hours of work.
#ifndef QV8_PICTURES_PHOTO_HEADER_H
#define QV8_PICTURES_PHOTO_HEADER_H

#include <cstddef>
#include <cstdint>
#include <string>

#include <qv8platform.h>

struct PhotoHeader {
    std::uint64_t width = 0;
    std::uint64_t height = 0;
    std::uint64_t scans = 0; // of a JPEG file: each of them goes over the whole picture
};

bool LooksLikePng(const BYTE* bytes, std::size_t size);
bool LooksLikeJpeg(const BYTE* bytes, std::size_t size);

// What there is against decoding the file, or nothing. `header` tells the size when nothing is.
std::string CheckPhotoHeader(const BYTE* bytes, std::size_t size, std::uint64_t maxPixels, PhotoHeader& header);

#endif
