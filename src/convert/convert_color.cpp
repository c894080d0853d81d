#include "convert/convert_color.h"

#include <algorithm>

namespace qv8 {
namespace {

bool IsListed(int depth, std::initializer_list<int> depths) {
    return std::find(depths.begin(), depths.end(), depth) != depths.end();
}

bool IsConvertible(int sourceDepth, int depth) {
    return sourceDepth != depth && IsListed(sourceDepth, {1, 4, 8, 16, 24, 32}) &&
           IsListed(depth, {1, 4, 8, 16, 24, 32, QV8_DEPTH_GREY});
}

void WriteGreyRamp(RGBQUAD* palette) {
    for (unsigned i = 0; i != 256; ++i) {
        const auto level = static_cast<BYTE>(i);
        palette[i] = {level, level, level, 0};
    }
}

// The table of an expanded picture: a grey ramp, or the source's colours.
void WriteExpandedPalette(const DibView& source, int depth, RGBQUAD* palette) {
    if (depth == QV8_DEPTH_GREY) {
        WriteGreyRamp(palette);
    } else if (depth <= 8) {
        std::transform(source.palette, source.palette + source.paletteSize, palette,
                       [](const RGBQUAD& entry) -> RGBQUAD {
                           return {entry.rgbBlue, entry.rgbGreen, entry.rgbRed, 0};
                       });
    }
}

HGLOBAL Expand(const DibView& source, int depth, const Progress& progress) {
    const std::uint32_t kept = depth <= 8 ? source.paletteSize : 0;
    NewPicture result = NewConverted(source, depth, depth == QV8_DEPTH_GREY ? 256 : kept, kept, Pixels::kUnwritten);
    if (!result) {
        return nullptr;
    }
    WriteExpandedPalette(source, depth, result.Palette());
    const bool done = source.IsPaletted() ? ExpandPalette(source, depth, result, progress)
                                          : ConvertTrueColour(source, result, progress);
    return done ? result.Release() : nullptr;
}

HGLOBAL Reduce(const DibView& source, int depth, const Progress& progress) {
    if (BitsOfDepth(depth) < 16) {
        SetErrorStatus(QV8_STATUS_DEPTH);
        return nullptr;
    }
    NewPicture result = NewConverted(source, depth, 0, 0, Pixels::kUnwritten);
    return result && ConvertTrueColour(source, result, progress) ? result.Release() : nullptr;
}

} // namespace

NewPicture NewConverted(const DibView& source, int depth, std::uint32_t paletteSize, std::uint32_t colorsUsed,
                        Pixels pixels) {
    const int bits = BitsOfDepth(depth);
    const std::uint64_t headerBytes = kHeaderBytes + std::uint64_t{paletteSize} * sizeof(RGBQUAD);
    const std::uint32_t bytes = DibBytes(headerBytes, bits, source.width, source.height);
    NewPicture result = AllocatePicture(bytes, pixels);
    if (!result) {
        return result;
    }
    BITMAPINFOHEADER& header = result.Header();
    header = {};
    header.biSize = kHeaderBytes;
    header.biWidth = source.width;
    header.biHeight = source.height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bits);
    header.biSizeImage = bytes - static_cast<DWORD>(headerBytes);
    header.biXPelsPerMeter = source.header->biXPelsPerMeter;
    header.biYPelsPerMeter = source.header->biYPelsPerMeter;
    header.biClrUsed = colorsUsed;
    DibView& view = result.view;
    view.header = &header;
    view.palette = result.Palette();
    view.paletteSize = paletteSize;
    view.pixels = static_cast<const BYTE*>(result.lock.get()) + headerBytes;
    view.stride = static_cast<std::size_t>(DibRowBytes(bits, source.width));
    view.width = source.width;
    view.height = source.height;
    view.bitCount = bits;
    return result;
}

HGLOBAL ConvertColor(HGLOBAL image, WORD bitDepth, bool fixedPalette, bool dither, BYTE threshold,
                     DWORD progressOwner) {
    static_cast<void>(fixedPalette);
    static_cast<void>(dither);
    static_cast<void>(threshold);
    if (image == nullptr) {
        return nullptr;
    }
    SetErrorStatus(QV8_STATUS_SUCCESS);
    Picture source;
    if (!LockPicture(image, source)) {
        return nullptr;
    }
    const int sourceDepth = source.view.header->biBitCount;
    const int depth = bitDepth;
    if (!IsConvertible(sourceDepth, depth)) {
        SetErrorStatus(QV8_STATUS_PARAMETER);
        return nullptr;
    }
    if (!CheckPicture(source) || !CheckDibFormat(source.view, kAcceptAll, source.view.masks)) {
        return nullptr;
    }
    const Progress progress{progressOwner};
    return sourceDepth <= BitsOfDepth(depth) ? Expand(source.view, depth, progress)
                                             : Reduce(source.view, depth, progress);
}

} // namespace qv8
