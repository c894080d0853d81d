#include "pictures/codec.h"

#include <array>
#include <cstring>
#include <new>

#include "pictures/channel_order.h"

namespace {

// Tables of 2, 4, 16 and 256 grey levels, one behind the other.
constexpr std::array<RGBQUAD, 278> kRamps = [] {
    std::array<RGBQUAD, 278> ramps{};
    std::size_t at = 0;
    for (const unsigned levels : {2U, 4U, 16U, 256U}) {
        for (unsigned level = 0; level < levels; ++level) {
            const auto value = static_cast<BYTE>(level * 255 / (levels - 1));
            ramps[at++] = {value, value, value, 0};
        }
    }
    return ramps;
}();

} // namespace

void CheckSize(std::uint64_t width, std::uint64_t height, std::size_t fileSize, std::uint64_t mostPixelsInAByte,
               const ReadOptions& options) {
    Require(width > 0 && height > 0 && width <= 0x7FFFFFFF && height <= 0x7FFFFFFF, "it has no valid size");
    const std::uint64_t pixels = width * height;
    const std::string sides = std::to_string(width) + " x " + std::to_string(height) + " pixels";
    Require(pixels <= options.maxPixels, sides + " are above the limit of " + std::to_string(options.maxPixels));
    Require(mostPixelsInAByte == 0 || pixels / mostPixelsInAByte <= fileSize, "it is too short for " + sides);
    if (options.sizeKnown) {
        options.sizeKnown(width, height);
    }
}

Picture NewPicture(std::uint64_t width, std::uint64_t height, unsigned depth, std::span<const RGBQUAD> table) {
    const std::uint64_t stride = RowBytes(depth, width);
    const std::uint64_t size = sizeof(BITMAPINFOHEADER) + table.size_bytes() + stride * height;
    Require(width <= 0x7FFFFFFF && size <= kLargestBlock, "it is too large");
    Picture picture(GlobalAlloc(GMEM_MOVEABLE, static_cast<SIZE_T>(size)));
    auto* const bytes = picture ? static_cast<BYTE*>(GlobalLock(picture.Handle())) : nullptr;
    if (bytes == nullptr) {
        throw std::bad_alloc();
    }
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = static_cast<LONG>(width);
    header.biHeight = static_cast<LONG>(height);
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(depth);
    header.biCompression = BI_RGB;
    header.biSizeImage = static_cast<DWORD>(stride * height);
    const bool isFull = depth <= 8 && table.size() == std::size_t{1} << depth;
    header.biClrUsed = isFull ? 0 : static_cast<DWORD>(table.size());
    std::memcpy(bytes, &header, sizeof header);
    if (!table.empty()) {
        std::memcpy(bytes + sizeof header, table.data(), table.size_bytes());
    }
    BYTE* row = bytes + sizeof header + table.size_bytes();
    for (std::uint64_t y = 0; y < height; ++y, row += stride) {
        std::memset(row + stride - 4, 0, 4);
    }
    GlobalUnlock(picture.Handle());
    return picture;
}

std::span<const RGBQUAD> GreyRamp(unsigned depth) {
    const std::size_t levels = std::size_t{1} << depth;
    const std::size_t before = depth == 1 ? 0 : depth == 2 ? 2 : depth == 4 ? 6 : 22;
    return std::span(kRamps).subspan(before, levels);
}

void SwapRedAndBlue(BYTE* row, std::size_t width, std::size_t pixelBytes) {
    SwapRedAndBlue(row, row, width, pixelBytes);
}
