#include "image/create_copy.h"

#include <algorithm>
#include <cstring>

#include "frame/rows.h"
#include "pixels/palettes.h"
#include "pixels/pixel_fill.h"

namespace qv8 {
namespace {

// In black and white the brighter half of all colours is white, which is not always the nearest.
RGBQUAD ToFill(const DibView& picture, const RGBQUAD& colour) {
    if (picture.paletteSize != 2) {
        return colour;
    }
    return picture.palette[(colour.rgbRed + colour.rgbGreen + colour.rgbBlue) / 3 > 127 ? 1 : 0];
}

NewPicture NewOfDepth(int width, int height, int bitDepth) {
    RGBQUAD palette[kMostFixedColours];
    const int paletteSize = WriteFixedPalette(bitDepth, palette);
    const std::size_t tableBytes = static_cast<std::size_t>(paletteSize) * sizeof(RGBQUAD);
    const std::uint32_t bytes = DibBytes(kHeaderBytes + tableBytes, bitDepth, width, height);
    NewPicture result = AllocatePicture(bytes, Pixels::kZero);
    if (!result) {
        return result;
    }
    BITMAPINFOHEADER& header = result.Header();
    header.biSize = kHeaderBytes;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(bitDepth);
    header.biSizeImage = bytes - static_cast<DWORD>(kHeaderBytes + tableBytes);
    header.biClrUsed = paletteSize < 1 << std::min(bitDepth, 8) ? static_cast<DWORD>(paletteSize) : 0;
    std::copy_n(palette, paletteSize, result.Palette());
    DescribeNew(result, static_cast<std::uint32_t>(paletteSize));
    return result;
}

} // namespace

HGLOBAL CreateImage(int width, int height, int bitDepth, BYTE red, BYTE green, BYTE blue, DWORD progressOwner) {
    if (LayoutOfDepth(bitDepth) == nullptr) {
        SetErrorStatus(QV8_STATUS_DEPTH);
        return nullptr;
    }
    NewPicture result = NewOfDepth(std::max(width, 1), std::max(height, 1), bitDepth);
    if (!result) {
        return nullptr;
    }
    const DibView& view = result.view;
    const RGBQUAD colour = ToFill(view, {blue, green, red, 0});
    FillRow(PackedPatternOf(view, colour), view, result.Row(0));
    const bool done = ForEachRow(view.height, Progress{progressOwner}, [&](int row) {
        if (row > 0) {
            std::memcpy(result.Row(row), result.Row(0), view.stride);
        }
    });
    return done ? result.Release() : nullptr;
}

HGLOBAL CopyImage(HGLOBAL image, DWORD progressOwner) {
    Picture source;
    if (!LockPicture(image, source) || !CheckPicture(source)) {
        return nullptr;
    }
    const DibView& view = source.view;
    NewPicture result = DuplicateDib(view, view.width, view.height, Pixels::kUnwritten);
    if (!result) {
        return nullptr;
    }
    const bool done = ForEachRow(view.height, Progress{progressOwner},
                                 [&](int row) { std::memcpy(result.Row(row), view.Row(row), view.stride); });
    return done ? result.Release() : nullptr;
}

} // namespace qv8
