// The pixels of a picture as channels: what an effect asks that reads or writes them.
#pragma once

#include "pixels/dib.h"

namespace qv8 {

// Levels of grey by index, and back, in pictures whose table holds them all.
struct GreyRamp {
    BYTE levels[256];
    BYTE indices[256];
};

struct PixelFormat {
    const PixelLayout* layout = nullptr;
    int bytesPerPixel = 0;
    int channels = 0; // 3; 1 of a grey ramp, its level, in the blue plane; 0 of other indices, which cannot be coded
    PixelCodec codec = {}; // of three channels
    GreyRamp ramp = {};    // of one

    bool IsGrey() const {
        return channels == 1;
    }
    std::size_t BytesOf(int pixels) const {
        return static_cast<std::size_t>(pixels) * static_cast<std::size_t>(bytesPerPixel);
    }
    // Packed pixels, indices one in each byte, to channels.
    void Decode(const BYTE* source, const PlanarRow& row, int count) const;
    // And back. Bytes that no channel uses are kept, so that they are whatever the caller has written before.
    void Encode(const PlanarRow& row, BYTE* result, int count) const;
};

// The format of pictures of a layout that is not indexed.
PixelFormat PixelFormatOf(const PixelLayout& layout);

PixelFormat PixelFormatOf(const DibView& picture);

// Whether pixels can be blended: indices only where they stand for all levels of grey.
bool CanBlend(const DibView& picture);

// For results that are about to be encoded: gives pixels with unused bytes those of the source, or zeros.
void CopyUnused(const PixelFormat& format, const BYTE* source, BYTE* result, int count);
void ClearBeforeEncoding(const PixelFormat& format, BYTE* result, int count);

// Zeroes the unused bytes of finished pixels.
void ClearUnused(const PixelLayout& layout, BYTE* pixels, int count);

// Leaves of copied pixels what a way through channels would leave: no unused bytes, and no bits that 8-bit channels
// cannot tell apart.
void ReduceToChannels(const PixelLayout& layout, BYTE* pixels, int count);

} // namespace qv8
