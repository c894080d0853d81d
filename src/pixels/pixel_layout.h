// How pixels are laid out: one row of a table for each layout, which everything else asks. A new layout is a new row,
// and where its pixels are coded as no others are, a decoder and an encoder in pixel_kernels.
#pragma once

#include "pixels/pixel_kernels.h"
#include "qv8com.h"

namespace qv8 {

struct PixelUnit;

// What a worker takes, for CheckDibFormat.
enum AcceptFlags : unsigned {
    kAccept1 = 1,
    kAccept4 = 2,
    kAcceptGreyRamp8 = 4,
    kAccept8 = 8,
    kAccept16 = 16,
    kAccept24 = 32,
    kAccept32 = 64,
    kAcceptAll = 127,
    kAcceptGreyOrTrueColour = kAcceptGreyRamp8 | kAccept16 | kAccept24 | kAccept32,
};

struct PixelLayout {
    int bits; // of a pixel
    unsigned accept;
    // The companion's question that tells layouts of one depth apart, and the answers that mean this one: bit n for the
    // answer n. Null where the depth says it all.
    int(QV8API* question)(const void* header);
    unsigned answers;
    PixelCodec PixelKernels::*codec; // null for indices of a colour table
    bool isBgr;                      // the first three bytes are blue, green and red, nothing else is coded in them
    int unusedBytes;                 // behind the channels
    const PixelUnit* unit;           // copies pixels as they are

    bool IsIndexed() const {
        return codec == nullptr;
    }
    bool SharesBytes() const {
        return bits < 8;
    }
    // Of a pixel by itself: an index that shares its byte with others takes one of its own.
    int Bytes() const {
        return SharesBytes() ? 1 : bits / 8;
    }
    bool IsNothingButBgr() const {
        return isBgr && unusedBytes == 0;
    }
};

// The layout of new pictures of a depth; null when pictures do not have this depth.
const PixelLayout* LayoutOfDepth(int bitCount);

// The layout of a picture of a known depth, which the companion is asked for where the depth leaves it open; null when
// the companion refuses it.
const PixelLayout* LayoutOf(const BITMAPINFOHEADER& header);

} // namespace qv8
