// Reading of BMP files. Nothing in a file is believed: every size is formed in 64 bits and held against the size of the
// file before it is used.
#include <algorithm>
#include <cstring>
#include <new>

#include "pictures/bmp.h"

namespace {

constexpr std::uint64_t kInfoHeaderBytes = sizeof(BITMAPINFOHEADER);
constexpr std::uint64_t kCoreHeaderBytes = 12; // of OS/2: sides of 16 bits, and a table of three bytes an entry
constexpr std::uint64_t kMaskBytes = 12;
constexpr DWORD kAlphaBitFields = 6; // as BI_BITFIELDS, with a fourth mask

// Where the pieces of the picture lie in the file, all in bytes from its start.
struct Layout {
    BITMAPINFOHEADER header; // as it is in the picture block: bottom-up, 40 bytes
    std::uint64_t headerSize;
    DWORD compression;
    bool topDown;
    std::uint64_t masks; // 0 when there are none
    std::uint64_t table;
    std::uint64_t entryBytes;
    std::uint64_t entries;
    std::uint64_t pixels;
    std::uint64_t stride;
    std::uint64_t height;
};

DWORD DwordAt(ByteView file, std::uint64_t offset) {
    const BYTE* const at = file.data() + offset;
    return DWORD{at[0]} | DWORD{at[1]} << 8 | DWORD{at[2]} << 16 | DWORD{at[3]} << 24;
}

bool IsRunLength(DWORD compression) {
    return compression == BI_RLE8 || compression == BI_RLE4;
}

bool HasMasks(DWORD compression) {
    return compression == BI_BITFIELDS || compression == kAlphaBitFields;
}

// Fills the header in as it is in the picture block. That of OS/2's second version agrees with it as far as it goes,
// but gives the numbers of the masks' compressions another meaning.
void TakeHeader(Layout& layout, ByteView file) {
    const DWORD size = DwordAt(file, kBmpFileHeaderBytes);
    const bool os2 = size == kCoreHeaderBytes || size == 16 || size == 64;
    Require(os2 || size == 40 || size == 52 || size == 56 || size == 108 || size == 124,
            "a header of " + std::to_string(size) + " bytes is not supported");
    Require(file.size() >= kBmpFileHeaderBytes + size, "the file ends within the header");
    layout.headerSize = size;
    layout.entryBytes = size == kCoreHeaderBytes ? 3 : 4;
    const BYTE* const from = file.data() + kBmpFileHeaderBytes;
    BITMAPINFOHEADER& header = layout.header;
    if (size == kCoreHeaderBytes) {
        header.biWidth = from[4] | from[5] << 8;
        header.biHeight = from[6] | from[7] << 8;
        header.biBitCount = static_cast<WORD>(from[10] | from[11] << 8);
    } else {
        std::memcpy(&header, from, std::min<std::size_t>(size, sizeof header));
    }
    Require(!os2 || header.biCompression < BI_BITFIELDS, "this compression of OS/2 is not supported");
    header.biSize = kInfoHeaderBytes;
    header.biPlanes = 1;
    layout.compression = header.biCompression;
}

void CheckDepthAndCompression(WORD bitCount, DWORD compression) {
    Require(bitCount == 1 || bitCount == 4 || bitCount == 8 || bitCount == 16 || bitCount == 24 || bitCount == 32,
            "a depth of " + std::to_string(bitCount) + " bits is not supported");
    Require(compression <= BI_BITFIELDS || compression == kAlphaBitFields,
            "compression " + std::to_string(compression) + " is not supported");
    Require(!HasMasks(compression) || bitCount == 16 || bitCount == 32,
            "channel masks at " + std::to_string(bitCount) + " bits are not allowed");
    Require(!IsRunLength(compression) || bitCount == (compression == BI_RLE8 ? 8 : 4),
            "this run-length compression does not fit " + std::to_string(bitCount) + " bits");
}

// Checks the size and puts it into the header the way picture blocks have it.
void TakeSize(Layout& layout, const ReadOptions& options) {
    BITMAPINFOHEADER& header = layout.header;
    Require(header.biWidth > 0 && header.biHeight != 0 && header.biHeight >= -0x7FFFFFFF, "it has no valid size");
    layout.topDown = header.biHeight < 0;
    Require(!layout.topDown || !IsRunLength(layout.compression), "run-length compression from the top is not allowed");
    header.biHeight = layout.topDown ? -header.biHeight : header.biHeight;
    const auto width = static_cast<std::uint64_t>(header.biWidth);
    layout.height = static_cast<std::uint64_t>(header.biHeight);
    CheckSize(width, layout.height, 0, 0, options);
    layout.stride = RowBytes(header.biBitCount, width);
    Require(layout.stride * layout.height <= kLargestBlock, "it is too large");
    if (header.biSizeImage != 0) { // 0 is allowed and kept; anything else is to be true
        header.biSizeImage = static_cast<DWORD>(layout.stride * layout.height);
    }
    if (IsRunLength(layout.compression)) {
        header.biCompression = BI_RGB;
    } else if (HasMasks(layout.compression)) {
        header.biCompression = BI_BITFIELDS;
    }
}

// Finds masks, colour table and pixels. A 40-byte header is followed by the masks, larger ones contain them in the same
// place; so they are behind the first 40 bytes in both.
void FindPieces(Layout& layout, DWORD pixelOffset, std::size_t fileSize) {
    BITMAPINFOHEADER& header = layout.header;
    const bool hasMasks = HasMasks(layout.compression);
    const std::uint64_t maskBytes = layout.compression == kAlphaBitFields ? kMaskBytes + 4 : kMaskBytes;
    layout.masks = hasMasks ? kBmpFileHeaderBytes + kInfoHeaderBytes : 0;
    layout.table =
        kBmpFileHeaderBytes + layout.headerSize + (hasMasks && layout.headerSize == kInfoHeaderBytes ? maskBytes : 0);
    const std::uint64_t fullTable = header.biBitCount <= 8 ? 1U << header.biBitCount : 0;
    layout.entries = header.biClrUsed != 0 ? std::uint64_t{header.biClrUsed} : fullTable;
    const bool os2 = layout.headerSize < kInfoHeaderBytes || layout.headerSize == 64;
    const std::uint64_t room = pixelOffset > layout.table ? (pixelOffset - layout.table) / layout.entryBytes : 0;
    if (os2 && header.biClrUsed == 0 && room < fullTable && room != 0) { // there is no other sign of a short table
        layout.entries = room;
        header.biClrUsed = static_cast<DWORD>(room);
    }
    const std::uint64_t tableEnd = layout.table + layout.entryBytes * layout.entries;
    layout.pixels = pixelOffset != 0 ? pixelOffset : tableEnd;
    Require(layout.pixels >= tableEnd, "the pixels begin within the colour table");
    const std::uint64_t leastPixels = IsRunLength(layout.compression) ? 0 : layout.stride * layout.height;
    Require(layout.pixels + leastPixels <= fileSize, "the file ends within the pixels");
    Require(kInfoHeaderBytes + kMaskBytes + 4 * layout.entries + layout.stride * layout.height <= kLargestBlock,
            "it is too large");
}

Layout Understand(ByteView file, const ReadOptions& options) {
    Require(file.size() >= kBmpFileHeaderBytes + 4, "the file ends within the header");
    Layout layout{};
    TakeHeader(layout, file);
    CheckDepthAndCompression(layout.header.biBitCount, layout.compression);
    TakeSize(layout, options);
    FindPieces(layout, DwordAt(file, 10), file.size());
    return layout;
}

void CopyTable(ByteView file, const Layout& layout, BYTE* to) {
    const BYTE* from = file.data() + layout.table;
    for (std::uint64_t i = 0; i < layout.entries; ++i, from += layout.entryBytes, to += 4) {
        std::memcpy(to, from, static_cast<std::size_t>(layout.entryBytes));
    }
}

Picture Assemble(ByteView file, const Layout& layout) {
    const std::uint64_t maskBytes = layout.masks != 0 ? kMaskBytes : 0;
    const std::uint64_t beforePixels = kInfoHeaderBytes + maskBytes + 4 * layout.entries;
    const std::uint64_t blockSize = beforePixels + layout.stride * layout.height;
    const bool cleared = IsRunLength(layout.compression) || layout.entryBytes != 4;
    Picture picture(GlobalAlloc(cleared ? GHND : GMEM_MOVEABLE, static_cast<SIZE_T>(blockSize)));
    auto* const block = picture ? static_cast<BYTE*>(GlobalLock(picture.Handle())) : nullptr;
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    std::memcpy(block, &layout.header, kInfoHeaderBytes);
    std::memcpy(block + kInfoHeaderBytes, file.data() + layout.masks, static_cast<std::size_t>(maskBytes));
    CopyTable(file, layout, block + kInfoHeaderBytes + maskBytes);
    BYTE* const pixels = block + beforePixels;
    const auto stride = static_cast<std::size_t>(layout.stride);
    if (IsRunLength(layout.compression)) {
        DecodeRunLengths(file.subspan(static_cast<std::size_t>(layout.pixels)), layout.header, pixels, stride);
    } else {
        for (std::uint64_t row = 0; row < layout.height; ++row) {
            const std::uint64_t inFile = layout.topDown ? layout.height - 1 - row : row;
            std::memcpy(pixels + row * stride, file.data() + layout.pixels + inFile * stride, stride);
        }
    }
    GlobalUnlock(picture.Handle());
    return picture;
}

// What the larger headers hold: a mask of alpha, and where a profile lies.
void TakeMetadata(ByteView file, const Layout& layout, Metadata& metadata) {
    const auto positive = [](LONG value) { return value > 0 ? static_cast<std::uint32_t>(value) : 0; };
    metadata.xPixelsPerMetre = positive(layout.header.biXPelsPerMeter);
    metadata.yPixelsPerMetre = positive(layout.header.biYPelsPerMeter);
    constexpr std::uint64_t kAlphaMask = kBmpFileHeaderBytes + kInfoHeaderBytes + kMaskBytes;
    const bool hasAlphaMask = HasMasks(layout.compression) && (layout.headerSize >= kInfoHeaderBytes + kMaskBytes + 4 ||
                                                               layout.compression == kAlphaBitFields);
    metadata.alpha = layout.header.biBitCount == 32 && hasAlphaMask && DwordAt(file, kAlphaMask) == 0xFF000000;
    constexpr DWORD kEmbedded = 0x4D424544; // "MBED"
    constexpr std::uint64_t kSpace = kBmpFileHeaderBytes + 56;
    constexpr std::uint64_t kProfile = kBmpFileHeaderBytes + 112;
    if (layout.headerSize == 124 && DwordAt(file, kSpace) == kEmbedded) {
        const std::uint64_t from = std::uint64_t{kBmpFileHeaderBytes} + DwordAt(file, kProfile);
        const std::uint64_t size = DwordAt(file, kProfile + 4);
        if (from <= file.size() && size <= file.size() - from) {
            const ByteView profile = file.subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(size));
            metadata.profile.assign(profile.begin(), profile.end());
        }
    }
}

} // namespace

bool IsBmp(ByteView file) {
    return file.size() >= 2 && file[0] == 'B' && file[1] == 'M';
}

LoadedPicture ReadBmp(ByteView file, const ReadOptions& options) {
    Require(IsBmp(file), "it is not a BMP file");
    const Layout layout = Understand(file, options);
    LoadedPicture loaded{Assemble(file, layout), ImageFormat::kBmp, {}, {}};
    TakeMetadata(file, layout, loaded.metadata);
    return loaded;
}
