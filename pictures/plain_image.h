// Pictures as plain samples: top row first, no padding.
#ifndef QV8_PICTURES_PLAIN_IMAGE_H
#define QV8_PICTURES_PLAIN_IMAGE_H

#include <cstddef>
#include <string>
#include <vector>

#include "pictures/failure.h"
#include "pictures/picture.h"

struct PlainImage {
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t channels = 0; // 1 grey; 3 red, green, blue; 4 red, green, blue, alpha
    std::vector<BYTE> samples;
};

// The picture with everything that is in it and no more: one channel when its colour table holds grey levels only, four
// when it has 32 bits and any fourth byte is not 0, else three. Throws a Failure with `code` and with `subject` in
// front of its words when the picture has channel masks that the library does not know.
PlainImage PlainFromPicture(const Picture& picture, ExitCode code, const std::string& subject);

// Makes a picture of 8 bits with a grey ramp from one channel, of 24 bits from three, and of 32 bits from four.
Picture PictureFromSamples(const BYTE* samples, std::size_t width, std::size_t height, std::size_t channels);

#endif
