#include "frame/dib.h"

#include <algorithm>
#include <bitset>
#include <cstring>

#include "qv8com.h"

namespace qv8 {
namespace {

constexpr std::size_t kMaskBytes = 12;

bool Fail(int status) {
    SetErrorStatus(status);
    return false;
}

// The companion reads three masks behind the header of a 16- or 32-bit picture that says it has them.
bool HoldsMasks(const BITMAPINFOHEADER& header, std::size_t blockBytes) {
    const bool hasMasks = header.biCompression == BI_BITFIELDS && (header.biBitCount == 16 || header.biBitCount == 32);
    return !hasMasks || blockBytes >= kHeaderBytes + kMaskBytes;
}

ChannelMasks MasksOf(int layout) {
    if (layout == 1 || layout == 3) {
        return {0x7C00, 0x03E0, 0x001F};
    }
    if (layout == 2) {
        return {0xF800, 0x07E0, 0x001F};
    }
    return {};
}

} // namespace

bool IsKnownDepth(int bitCount) {
    return bitCount == 1 || bitCount == 4 || bitCount == 8 || bitCount == 16 || bitCount == 24 || bitCount == 32;
}

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

std::uint32_t PaletteLength(const BITMAPINFOHEADER& header) {
    return header.biClrUsed != 0 ? header.biClrUsed : 1U << header.biBitCount;
}

bool CheckDibFormat(const DibView& picture, unsigned acceptFlags, ChannelMasks& masks) {
    bool accepted = false;
    switch (picture.header->biBitCount) {
    case 1:
        accepted = (acceptFlags & kAccept1) != 0;
        break;
    case 4:
        accepted = (acceptFlags & kAccept4) != 0;
        break;
    case 8:
        accepted =
            (acceptFlags & kAccept8) != 0 || ((acceptFlags & kAcceptGreyRamp8) != 0 && IsGreyRampPalette(picture));
        break;
    case 16:
        if ((acceptFlags & kAccept16) != 0) {
            const int layout = GetBmp16Info(picture.header);
            masks = MasksOf(layout);
            accepted = layout != -1;
        }
        break;
    case 24:
        accepted = (acceptFlags & kAccept24) != 0;
        break;
    case 32:
        accepted = (acceptFlags & kAccept32) != 0 && GetBmp32Info(picture.header) != -1;
        break;
    default:
        break;
    }
    return accepted || Fail(QV8_STATUS_PICTURE);
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
    if (!IsKnownDepth(header.biBitCount) || !HoldsMasks(header, blockBytes)) {
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
    return LockPicture(image, picture) && CheckPicture(picture) &&
           CheckDibFormat(picture.view, acceptFlags, picture.view.masks);
}

FullPalette FullPaletteOf(const DibView& picture) {
    FullPalette result = {};
    std::copy_n(picture.palette, std::min<std::uint32_t>(picture.paletteSize, 256), result.colours);
    return result;
}

NewPicture AllocatePicture(std::uint32_t bytes, Pixels pixels) {
    NewPicture result;
    if (bytes != 0) {
        result.block.reset(pixels == Pixels::kZero ? GlobalAlloc(GHND, bytes) : AllocateForOverwrite(bytes));
    }
    if (result.block) {
        result.lock = LockBlock(result.block.get());
    }
    if (!result) {
        SetErrorStatus(QV8_STATUS_MEMORY);
    }
    return result;
}

void DescribeNew(NewPicture& picture, std::uint32_t paletteSize) {
    const BITMAPINFOHEADER& header = picture.Header();
    DibView& view = picture.view;
    view.header = &header;
    view.palette = picture.Palette();
    view.paletteSize = paletteSize;
    view.pixels =
        static_cast<const BYTE*>(picture.lock.get()) + kHeaderBytes + std::size_t{paletteSize} * sizeof(RGBQUAD);
    view.width = header.biWidth;
    view.height = header.biHeight;
    view.bitCount = header.biBitCount;
    view.stride = static_cast<std::size_t>(DibRowBytes(view.bitCount, view.width));
}

NewPicture DuplicateDib(const DibView& source, int width, int height, Pixels pixels) {
    if (!IsKnownDepth(source.bitCount) || width < 1 || height < 1) {
        SetErrorStatus(QV8_STATUS_PARAMETER);
        return {};
    }
    const auto headerBytes = static_cast<std::size_t>(source.pixels - reinterpret_cast<const BYTE*>(source.header));
    const std::uint32_t bytes = DibBytes(headerBytes, source.bitCount, width, height);
    NewPicture result = AllocatePicture(bytes, pixels);
    if (!result) {
        return result;
    }
    std::memcpy(result.lock.get(), source.header, pixels == Pixels::kCopied ? bytes : headerBytes);
    BITMAPINFOHEADER& header = result.Header();
    header.biWidth = width;
    header.biHeight = height;
    header.biSizeImage = static_cast<DWORD>(bytes - headerBytes);
    result.view = source;
    result.view.header = &header;
    result.view.palette = source.palette != nullptr ? result.Palette() : nullptr;
    result.view.pixels = static_cast<const BYTE*>(result.lock.get()) + headerBytes;
    result.view.width = width;
    result.view.height = height;
    result.view.stride = static_cast<std::size_t>(DibRowBytes(source.bitCount, width));
    return result;
}

} // namespace qv8
