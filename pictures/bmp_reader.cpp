// Reading of BMP files. Nothing in a file is believed: every size is formed in 64 bits and held against the size of the
// file before it is used.
#include <cstring>
#include <new>
#include <stdexcept>

#include "pictures/bmp.h"

namespace {

constexpr std::uint64_t kInfoHeaderBytes = sizeof(BITMAPINFOHEADER);
constexpr std::uint64_t kMaskBytes = 12;
constexpr std::uint64_t kLargestBlock = 0x7FFFFFFF;

// A reason to refuse the file; it does not leave this file.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

void Require(bool condition, const std::string& otherwise) {
    if (!condition) {
        throw Refusal(otherwise);
    }
}

// Where the pieces of the picture lie in the file, all in bytes from its start.
struct Layout {
    BITMAPINFOHEADER header; // as it is in the picture block: bottom-up, 40 bytes
    bool topDown;
    std::uint64_t masks; // 0 when there are none
    std::uint64_t table;
    std::uint64_t tableBytes;
    std::uint64_t pixels;
    std::uint64_t stride;
    std::uint64_t height;
};

DWORD DwordAt(const BYTE* bytes, std::uint64_t offset) {
    const BYTE* const at = bytes + offset;
    return DWORD{at[0]} | DWORD{at[1]} << 8 | DWORD{at[2]} << 16 | DWORD{at[3]} << 24;
}

void CheckHeaderSize(DWORD headerSize) {
    Require(headerSize != 12 && headerSize != 16 && headerSize != 64, "OS/2 bitmaps are not supported");
    Require(headerSize == 40 || headerSize == 52 || headerSize == 56 || headerSize == 108 || headerSize == 124,
            "a header of " + std::to_string(headerSize) + " bytes is not supported");
}

void CheckDepthAndCompression(WORD bitCount, DWORD compression) {
    Require(bitCount == 1 || bitCount == 4 || bitCount == 8 || bitCount == 16 || bitCount == 24 || bitCount == 32,
            "a depth of " + std::to_string(bitCount) + " bits is not supported");
    Require(compression != BI_RLE8 && compression != BI_RLE4, "run-length compression is not supported");
    Require(compression == BI_RGB || compression == BI_BITFIELDS,
            "compression " + std::to_string(compression) + " is not supported");
    Require(compression == BI_RGB || bitCount == 16 || bitCount == 32,
            "channel masks at " + std::to_string(bitCount) + " bits are not allowed");
}

// Checks the size and puts it into the header the way picture blocks have it.
void TakeSize(Layout& layout, std::uint64_t maxPixels) {
    BITMAPINFOHEADER& header = layout.header;
    Require(header.biWidth > 0 && header.biHeight != 0 && header.biHeight >= -0x7FFFFFFF, "it has no valid size");
    layout.topDown = header.biHeight < 0;
    header.biHeight = layout.topDown ? -header.biHeight : header.biHeight;
    const auto width = static_cast<std::uint64_t>(header.biWidth);
    layout.height = static_cast<std::uint64_t>(header.biHeight);
    Require(width * layout.height <= maxPixels, std::to_string(width) + " x " + std::to_string(layout.height) +
                                                    " pixels are above the limit of " + std::to_string(maxPixels));
    layout.stride = RowBytes(header.biBitCount, width);
    Require(layout.stride * layout.height <= kLargestBlock, "it is too large");
    if (header.biSizeImage != 0) { // 0 is allowed and kept; anything else is to be true
        header.biSizeImage = static_cast<DWORD>(layout.stride * layout.height);
    }
}

// Finds masks, colour table and pixels. A 40-byte header is followed by the masks, larger ones contain them in the same
// place; so they are behind the first 40 bytes in both.
void FindPieces(Layout& layout, DWORD headerSize, DWORD pixelOffset, std::size_t fileSize) {
    const BITMAPINFOHEADER& header = layout.header;
    const bool hasMasks = header.biCompression == BI_BITFIELDS;
    layout.masks = hasMasks ? kBmpFileHeaderBytes + kInfoHeaderBytes : 0;
    layout.table = kBmpFileHeaderBytes + headerSize + (hasMasks && headerSize == kInfoHeaderBytes ? kMaskBytes : 0);
    const std::uint64_t fullTable = header.biBitCount <= 8 ? 1U << header.biBitCount : 0;
    layout.tableBytes = 4 * (header.biClrUsed != 0 ? std::uint64_t{header.biClrUsed} : fullTable);
    const std::uint64_t tableEnd = layout.table + layout.tableBytes;
    layout.pixels = pixelOffset != 0 ? pixelOffset : tableEnd;
    Require(layout.pixels >= tableEnd, "the pixels begin within the colour table");
    Require(layout.pixels + layout.stride * layout.height <= fileSize, "the file ends within the pixels");
    Require(kInfoHeaderBytes + kMaskBytes + layout.tableBytes + layout.stride * layout.height <= kLargestBlock,
            "it is too large");
}

Layout Understand(const BYTE* bytes, std::size_t size, std::uint64_t maxPixels) {
    Require(LooksLikeBmp(bytes, size), "it is not a BMP file");
    Require(size >= kBmpFileHeaderBytes + 4, "the file ends within the header");
    const DWORD headerSize = DwordAt(bytes, kBmpFileHeaderBytes);
    CheckHeaderSize(headerSize);
    Require(size >= kBmpFileHeaderBytes + headerSize, "the file ends within the header");
    Layout layout{};
    std::memcpy(&layout.header, bytes + kBmpFileHeaderBytes, sizeof layout.header);
    layout.header.biSize = kInfoHeaderBytes;
    layout.header.biPlanes = 1;
    CheckDepthAndCompression(layout.header.biBitCount, layout.header.biCompression);
    TakeSize(layout, maxPixels);
    FindPieces(layout, headerSize, DwordAt(bytes, 10), size);
    return layout;
}

Picture Assemble(const BYTE* bytes, const Layout& layout) {
    const std::uint64_t maskBytes = layout.masks != 0 ? kMaskBytes : 0;
    const std::uint64_t blockSize = kInfoHeaderBytes + maskBytes + layout.tableBytes + layout.stride * layout.height;
    Picture picture(GlobalAlloc(GMEM_MOVEABLE, static_cast<SIZE_T>(blockSize)));
    auto* to = picture ? static_cast<BYTE*>(GlobalLock(picture.Handle())) : nullptr;
    Require(to != nullptr, "out of memory");
    const auto append = [&to](const void* from, std::uint64_t count) {
        std::memcpy(to, from, static_cast<std::size_t>(count));
        to += count;
    };
    append(&layout.header, kInfoHeaderBytes);
    append(bytes + layout.masks, maskBytes);
    append(bytes + layout.table, layout.tableBytes);
    for (std::uint64_t row = 0; row < layout.height; ++row) {
        const std::uint64_t inFile = layout.topDown ? layout.height - 1 - row : row;
        append(bytes + layout.pixels + inFile * layout.stride, layout.stride);
    }
    GlobalUnlock(picture.Handle());
    return picture;
}

} // namespace

bool LooksLikeBmp(const BYTE* bytes, std::size_t size) {
    return size >= 2 && bytes[0] == 'B' && bytes[1] == 'M';
}

BmpReading ReadBmp(const BYTE* bytes, std::size_t size, std::uint64_t maxPixels) {
    try {
        return {Assemble(bytes, Understand(bytes, size, maxPixels)), {}};
    } catch (const Refusal& refusal) {
        return {Picture(), refusal.what()};
    }
}
