#include "pixels/pixel_fill.h"

#include <algorithm>
#include <cstring>

#include "pixels/palettes.h"
#include "pixels/pixel_format.h"
#include "pixels/pixel_unit.h"

namespace qv8 {
namespace {

// A byte full of pixels that share it, all of one index.
BYTE FillByte(BYTE index, int bits) {
    return static_cast<BYTE>(index * (0xFF / ((1 << bits) - 1)));
}

} // namespace

DWORD PackColour(const PixelLayout& layout, const RGBQUAD& colour) {
    RGBQUAD channels = colour;
    BYTE pixel[sizeof(DWORD)] = {};
    (ThePixelKernels().*layout.codec).encode({&channels.rgbBlue, &channels.rgbGreen, &channels.rgbRed}, pixel, 1);
    DWORD packed;
    std::memcpy(&packed, pixel, sizeof packed);
    return packed;
}

PixelPattern PatternOf(const DibView& picture, const RGBQUAD& colour) {
    // Entries beyond what a pixel can name are no choice.
    const DWORD pixel = picture.IsPaletted()
                            ? static_cast<DWORD>(NearestEntry(picture.palette, picture.NameableEntries(), colour.rgbRed,
                                                              colour.rgbGreen, colour.rgbBlue))
                            : PackColour(*picture.layout, colour);
    BYTE bytes[sizeof pixel];
    std::memcpy(bytes, &pixel, sizeof pixel);
    return RepeatPixel(bytes, static_cast<std::size_t>(picture.layout->Bytes()));
}

PixelPattern PackedPatternOf(const DibView& picture, const RGBQUAD& colour) {
    const PixelPattern pattern = PatternOf(picture, colour);
    if (!picture.layout->SharesBytes()) {
        return pattern;
    }
    const BYTE full = FillByte(pattern.bytes[0], picture.bitCount);
    return RepeatPixel(&full, 1);
}

PixelPattern RepeatPixel(const BYTE* pixel, std::size_t pixelBytes) {
    PixelPattern pattern;
    std::memcpy(pattern.bytes, pixel, pixelBytes);
    RepeatBytes(pattern.bytes, pixelBytes, PixelPattern::kBytes);
    return pattern;
}

void RepeatBytes(BYTE* bytes, std::size_t known, std::size_t count) {
    for (; known < count; known *= 2) {
        std::memcpy(bytes + known, bytes, std::min(known, count - known));
    }
}

void FillPixels(const PixelPattern& pattern, BYTE* result, std::size_t bytes) {
    for (std::size_t at = 0; at < bytes; at += PixelPattern::kBytes) {
        std::memcpy(result + at, pattern.bytes, std::min(bytes - at, PixelPattern::kBytes));
    }
}

void FillRow(const PixelPattern& packed, const DibView& picture, BYTE* row) {
    const std::size_t bits = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.bitCount);
    FillPixels(packed, row, (bits + 7) / 8);
    if (bits % 8 != 0) {
        row[bits / 8] &= static_cast<BYTE>(0xFF00U >> (bits % 8));
    }
    ClearPadding(picture, row);
}

} // namespace qv8
