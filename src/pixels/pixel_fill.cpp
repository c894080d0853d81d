#include "pixels/pixel_fill.h"

#include "pixels/palettes.h"
#include "pixels/pixel_kernels.h"

#include <algorithm>
#include <cstring>

namespace qv8 {

void WritePixel(const DibView& picture, const RGBQUAD& colour, BYTE (&pixel)[4]) {
    const RGBQUAD plain = {colour.rgbBlue, colour.rgbGreen, colour.rgbRed, 0};
    std::memcpy(pixel, &plain, sizeof plain);
    if (picture.IsPaletted()) { // entries beyond what a pixel can name are no choice
        pixel[0] = static_cast<BYTE>(
            NearestEntry(picture.palette, picture.NameableEntries(), colour.rgbRed, colour.rgbGreen, colour.rgbBlue));
    } else if (picture.bitCount == 16) {
        const WORD word = PackWord(picture.masks, colour.rgbBlue, colour.rgbGreen, colour.rgbRed);
        std::memcpy(pixel, &word, sizeof word);
    }
}

PixelPattern RepeatPixel(const BYTE* pixel, std::size_t pixelBytes) {
    PixelPattern pattern;
    for (std::size_t i = 0; i != PixelPattern::kBytes; ++i) {
        pattern.bytes[i] = pixel[i % pixelBytes];
    }
    return pattern;
}

void FillPixels(const PixelPattern& pattern, BYTE* result, std::size_t bytes) {
    for (std::size_t at = 0; at < bytes; at += PixelPattern::kBytes) {
        std::memcpy(result + at, pattern.bytes, std::min(bytes - at, PixelPattern::kBytes));
    }
}

} // namespace qv8
