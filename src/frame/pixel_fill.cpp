#include "frame/pixel_fill.h"

#include <algorithm>
#include <cstring>

namespace qv8 {

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
