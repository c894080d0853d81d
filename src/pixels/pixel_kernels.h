// Pixels as planar 8-bit channels, and back: the only code that knows how a true-colour pixel is laid out.
#pragma once

#include "frame/dib.h"

namespace qv8 {

// Blue, green and red of a run of pixels.
struct PlanarRow {
    BYTE* blue;
    BYTE* green;
    BYTE* red;
};

// decode: `count` packed pixels into channels. encode: channels into pixels; a fourth byte is left alone.
// Source and destination do not overlap. The masks matter to 16-bit pixels only.
struct PixelKernels {
    using Decode = void (*)(const ChannelMasks& masks, const BYTE* source, const PlanarRow& row, int count);
    using Encode = void (*)(const ChannelMasks& masks, const PlanarRow& row, BYTE* result, int count);

    Decode decode16;
    Decode decode24;
    Decode decode32;
    Encode encode16;
    Encode encode24;
    Encode encode32;
    // Packed 24-bit pixels into 32-bit ones with a fourth byte of 0, and back.
    void (*widen24)(const BYTE* source, BYTE* result, int count);
    void (*narrow32)(const BYTE* source, BYTE* result, int count);
};

const PixelKernels& ThePixelKernels();

// The decoder, encoder and size of one true-colour layout.
struct PixelFormat {
    PixelKernels::Decode decode;
    PixelKernels::Encode encode;
    int bytesPerPixel;
    ChannelMasks masks;
};

// The format of a 16-, 24- or 32-bit picture.
PixelFormat PixelFormatOf(int bitCount, const ChannelMasks& masks);

// The layout that conversions write: 5-5-5.
constexpr ChannelMasks kMasks555 = {0x7C00, 0x03E0, 0x001F};

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

// The 16-bit word of a colour.
constexpr WORD PackWord(const ChannelMasks& masks, unsigned blue, unsigned green, unsigned red) {
    return static_cast<WORD>(masks.Is555() ? Narrow5(red) << 10 | Narrow5(green) << 5 | Narrow5(blue)
                                           : Narrow5(red) << 11 | Narrow6(green) << 5 | Narrow5(blue));
}

} // namespace qv8
