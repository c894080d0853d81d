// Pixels as planar 8-bit channels, and back: how the channels of a pixel are coded stands here only, while pixel_layout
// tells which picture has which coding. Beside that, copies of packed pixels that pay for vectors.
#pragma once

#include <cstddef>

#include "platform/platform.h"

namespace qv8 {

// Blue, green and red of a run of pixels.
struct PlanarRow {
    BYTE* blue;
    BYTE* green;
    BYTE* red;

    PlanarRow From(std::ptrdiff_t first) const {
        return {blue + first, green + first, red + first};
    }
};

// decode: `count` packed pixels into channels. encode: channels into pixels; bytes that no channel uses are left alone.
// Source and destination do not overlap.
struct PixelCodec {
    void (*decode)(const BYTE* source, const PlanarRow& row, int count);
    void (*encode)(const PlanarRow& row, BYTE* result, int count);
    void (*clearUnused)(BYTE* pixels, int count) = nullptr; // zeroes those bytes; null where there are none
    // To packed 24-bit pixels and from them with unused bytes 0; null where channels are the only way.
    void (*toBgr)(const BYTE* source, BYTE* result, int count) = nullptr;
    void (*fromBgr)(const BYTE* source, BYTE* result, int count) = nullptr;
};

struct PixelKernels {
    PixelCodec words555;     // 16 bits: five of each channel, blue the lowest
    PixelCodec words565;     // with six of green
    PixelCodec unknownWords; // of a layout that nobody knows: read as black, written as 5-6-5
    PixelCodec bgr;          // bytes of blue, green and red
    PixelCodec bgrx;         // and one of nothing
    // Levels of grey to 24-bit pixels.
    void (*greysToBgr)(const BYTE* levels, BYTE* result, int count);
    // Bytes made of the eight bits from bit `shift` (1..7) of a byte on, the most significant one being bit 0.
    void (*shiftBits)(const BYTE* source, int shift, BYTE* result, std::size_t bytes);
    // 24-bit pixels backwards, from the one before `end` on.
    void (*reverse24)(const BYTE* end, BYTE* result, int count);
    // Columns of 24-bit pixels become rows: pixel i of row k of four, `resultStep` bytes apart, is the k-th pixel at
    // `source` + i * `sourceStep`. Two pixels behind these four must be readable.
    void (*turnFour24)(const BYTE* source, std::ptrdiff_t sourceStep, BYTE* result, std::ptrdiff_t resultStep,
                       int count);
};

const PixelKernels& ThePixelKernels();

// One channel between its width in a 16-bit pixel and 8 bits; all truncate.
constexpr unsigned Widen5(unsigned value) {
    return value * 255 / 31;
}
constexpr unsigned Widen6(unsigned value) {
    return value * 255 / 63;
}
constexpr unsigned Narrow5(unsigned value) {
    return value * 31 / 255;
}
constexpr unsigned Narrow6(unsigned value) {
    return value * 63 / 255;
}

} // namespace qv8
