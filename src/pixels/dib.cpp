#include "pixels/dib.h"

#include <algorithm>
#include <bitset>
#include <cstring>

#include "frame/status.h"
#include "qv8com.h"

namespace qv8 {
namespace {} // namespace

std::uint32_t DibBytes(std::uint64_t headerBytes, int bitCount, int width, int height) {
    if (width < 1 || height < 1 || headerBytes > kMaxBlockBytes) {
        return 0;
    }
    if (static_cast<std::int64_t>(bitCount) * width > 0x7FFFFFFF) { // so that no count of bits in a row leaves an int
        return 0;
    }
    const auto stride = static_cast<std::uint64_t>(DibRowBytes(bitCount, width));
    if (static_cast<std::uint64_t>(height) > kMaxBlockBytes / stride) {
        return 0;
    }
    const std::uint64_t total = headerBytes + stride * static_cast<std::uint64_t>(height);
    return total > kMaxBlockBytes ? 0 : static_cast<std::uint32_t>(total);
}

bool HasMasks(const BITMAPINFOHEADER& header) {
    const PixelLayout* const layout = LayoutOfDepth(header.biBitCount);
    return header.biCompression == BI_BITFIELDS && layout != nullptr && layout->question != nullptr;
}

std::uint32_t PaletteLength(const BITMAPINFOHEADER& header) {
    return header.biClrUsed != 0 ? header.biClrUsed : 1U << header.biBitCount;
}

bool CheckDibFormat(DibView& picture, unsigned acceptFlags) {
    const bool accepted = (acceptFlags & picture.layout->accept) != 0 ||
                          ((acceptFlags & kAcceptGreyRamp8) != 0 && IsGreyRampPalette(picture));
    const PixelLayout* const layout = accepted ? LayoutOf(*picture.header) : nullptr;
    if (layout == nullptr) {
        return Fail(QV8_STATUS_PICTURE);
    }
    picture.layout = layout;
    return true;
}

bool IsGreyRampPalette(const DibView& picture) {
    if (picture.bitCount != 8 || picture.paletteSize != 256) {
        return false;
    }
    std::bitset<256> levels;
    for (const RGBQUAD* entry = picture.palette; entry != picture.palette + 256; ++entry) {
        if (entry->rgbBlue != entry->rgbGreen || entry->rgbGreen != entry->rgbRed) {
            return false;
        }
        levels.set(entry->rgbBlue);
    }
    return levels.all();
}

bool LockPicture(HGLOBAL image, Picture& picture) {
    if (image == nullptr) {
        return Fail(QV8_STATUS_PICTURE);
    }
    picture.lock = LockBlock(image);
    if (!picture.lock) {
        return Fail(QV8_STATUS_MEMORY);
    }
    if (GlobalSize(image) < kHeaderBytes) {
        return Fail(QV8_STATUS_PICTURE);
    }
    picture.view.header = static_cast<const BITMAPINFOHEADER*>(picture.lock.get());
    return true;
}

bool CheckPicture(Picture& picture) {
    DibView& view = picture.view;
    const BITMAPINFOHEADER& header = *view.header;
    const std::size_t blockBytes = GlobalSize(picture.lock.get_deleter().block);
    view.layout = LayoutOfDepth(header.biBitCount);
    if (view.layout == nullptr || (HasMasks(header) && blockBytes < kHeaderBytes + kMaskBytes)) {
        return Fail(QV8_STATUS_PICTURE);
    }
    const int tableBytes = GetDibPalSize(&header);
    if (tableBytes < 0) {
        return Fail(QV8_STATUS_PICTURE);
    }
    const std::uint64_t headerBytes = kHeaderBytes + static_cast<std::uint64_t>(tableBytes);
    const std::uint32_t needed = DibBytes(headerBytes, header.biBitCount, header.biWidth, header.biHeight);
    if (needed == 0 || needed > blockBytes) {
        return Fail(QV8_STATUS_PICTURE);
    }
    const auto* const begin = static_cast<const BYTE*>(picture.lock.get());
    view.pixels = begin + headerBytes;
    view.width = header.biWidth;
    view.height = header.biHeight;
    view.bitCount = header.biBitCount;
    view.stride = static_cast<std::size_t>(DibRowBytes(view.bitCount, view.width));
    if (view.IsPaletted()) {
        view.palette = reinterpret_cast<const RGBQUAD*>(begin + kHeaderBytes);
        view.paletteSize = PaletteLength(header);
        if (view.paletteSize > static_cast<std::uint32_t>(tableBytes) / sizeof(RGBQUAD)) {
            return Fail(QV8_STATUS_PICTURE);
        }
    }
    return true;
}

bool OpenPicture(HGLOBAL image, unsigned acceptFlags, Picture& picture) {
    return LockPicture(image, picture) && CheckPicture(picture) && CheckDibFormat(picture.view, acceptFlags);
}

FullPalette FullPaletteOf(const DibView& picture) {
    FullPalette result = {};
    std::copy_n(picture.palette, std::min<std::uint32_t>(picture.paletteSize, 256), result.colours);
    return result;
}

NewPicture CreateDib(const DibDescription& description, InitialPixels pixels) {
    const auto& [bitCount, width, height, colours, coloursUsed] = description;
    const std::uint64_t headerBytes = kHeaderBytes + std::uint64_t{colours} * sizeof(RGBQUAD);
    const std::uint32_t bytes = DibBytes(headerBytes, bitCount, width, height);
    NewPicture result = {AllocatePicture(bytes, pixels), {}};
    if (!result) {
        return result;
    }
    BITMAPINFOHEADER& header = result.Header();
    header = {};
    header.biSize = kHeaderBytes;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bitCount);
    header.biSizeImage = bytes - static_cast<DWORD>(headerBytes);
    header.biClrUsed = coloursUsed;
    result.view = {&header,
                   result.Palette(),
                   colours,
                   result.memory.As<BYTE>() + headerBytes,
                   static_cast<std::size_t>(DibRowBytes(bitCount, width)),
                   width,
                   height,
                   bitCount,
                   LayoutOfDepth(bitCount)};
    return result;
}

NewPicture DuplicateDib(const DibView& source, int width, int height, InitialPixels pixels) {
    if (width < 1 || height < 1) {
        return Fail(QV8_STATUS_PARAMETER);
    }
    const auto headerBytes = static_cast<std::size_t>(source.pixels - reinterpret_cast<const BYTE*>(source.header));
    const std::uint32_t bytes = DibBytes(headerBytes, source.bitCount, width, height);
    NewPicture result = {AllocatePicture(bytes, pixels), source};
    if (!result) {
        return result;
    }
    BITMAPINFOHEADER& header = result.Header();
    std::memcpy(&header, source.header, pixels == InitialPixels::kCopied ? bytes : headerBytes);
    header.biWidth = width;
    header.biHeight = height;
    header.biSizeImage = static_cast<DWORD>(bytes - headerBytes);
    result.view.header = &header;
    result.view.palette = source.palette != nullptr ? result.Palette() : nullptr;
    result.view.pixels = result.memory.As<BYTE>() + headerBytes;
    result.view.width = width;
    result.view.height = height;
    result.view.stride = static_cast<std::size_t>(DibRowBytes(source.bitCount, width));
    return result;
}

} // namespace qv8
