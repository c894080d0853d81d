// What the header of a locked picture says about its colour table and its channel masks.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "qv8com.h"

namespace {

constexpr std::size_t kHeaderBytes = 40;
constexpr std::uint64_t kMaxResult = 0x7FFFFFFF;
constexpr std::uint64_t kEntryBytes = 4;

struct ChannelMasks {
    DWORD red;
    DWORD green;
    DWORD blue;
};

constexpr std::uint64_t kMaskBytes = sizeof(ChannelMasks);
constexpr ChannelMasks k555 = {0x7C00, 0x03E0, 0x001F};
constexpr ChannelMasks k565 = {0xF800, 0x07E0, 0x001F};
constexpr ChannelMasks k888 = {0xFF0000, 0x00FF00, 0x0000FF};

// Copies, because a picture inside a file that was read whole need not lie on a multiple of 4.
BITMAPINFOHEADER HeaderOf(const void* picture) {
    BITMAPINFOHEADER header;
    std::memcpy(&header, picture, kHeaderBytes);
    return header;
}

bool HasMasks(const void* picture, const ChannelMasks& masks) {
    return std::memcmp(static_cast<const BYTE*>(picture) + kHeaderBytes, &masks, sizeof masks) == 0;
}

std::uint64_t TableLength(const BITMAPINFOHEADER& header) {
    if (header.biClrUsed != 0) {
        return header.biClrUsed;
    }
    const bool hasTable = header.biBitCount == 1 || header.biBitCount == 4 || header.biBitCount == 8;
    return hasTable ? std::uint64_t{1} << header.biBitCount : 0;
}

// In headers long enough for them the masks are part of the header.
bool HasMasksBehindHeader(const BITMAPINFOHEADER& header) {
    return header.biSize < kHeaderBytes + kMaskBytes && header.biCompression == BI_BITFIELDS &&
           (header.biBitCount == 16 || header.biBitCount == 32);
}

int Saturated(std::uint64_t value) {
    return static_cast<int>(std::min(value, kMaxResult));
}

} // namespace

extern "C" {

QV8_REALIGN int QV8API DibNumColors(const void* picture) {
    return picture == nullptr ? 0 : Saturated(TableLength(HeaderOf(picture)));
}

QV8_REALIGN int QV8API GetDibPalSize(const void* picture) {
    if (picture == nullptr) {
        return 0;
    }
    const BITMAPINFOHEADER header = HeaderOf(picture);
    return Saturated(TableLength(header) * kEntryBytes + (HasMasksBehindHeader(header) ? kMaskBytes : 0));
}

QV8_REALIGN int QV8API GetBmp16Info(const void* picture) {
    if (picture == nullptr) {
        return -1;
    }
    const BITMAPINFOHEADER header = HeaderOf(picture);
    if (header.biBitCount == 16 && header.biCompression == BI_RGB) {
        return 1;
    }
    if (header.biBitCount != 16 || header.biCompression != BI_BITFIELDS) {
        return -1;
    }
    return HasMasks(picture, k565) ? 2 : HasMasks(picture, k555) ? 3 : -1;
}

QV8_REALIGN int QV8API GetBmp32Info(const void* picture) {
    if (picture == nullptr) {
        return -1;
    }
    const BITMAPINFOHEADER header = HeaderOf(picture);
    if (header.biBitCount == 32 && header.biCompression == BI_RGB) {
        return 1;
    }
    return header.biBitCount == 32 && header.biCompression == BI_BITFIELDS && HasMasks(picture, k888) ? 3 : -1;
}

} // extern "C"
