#include "image/create_copy.h"

#include <algorithm>
#include <cstring>

#include "frame/rows.h"
#include "pixels/palettes.h"
#include "pixels/pixel_kernels.h"

namespace qv8 {
namespace {

// The table of a new picture of `bitDepth` bits; returns its length.
int WriteNewPalette(int bitDepth, RGBQUAD* palette) {
    switch (bitDepth) {
    case 1:
        WriteFixedPalette1(palette);
        return 2;
    case 4:
        WriteFixedPalette4(palette);
        return kFixedColours4;
    case 8:
        WriteFixedPalette8(palette);
        return kFixedColours8;
    default:
        return 0;
    }
}

// The bytes that one pixel repeats with, as many as the depth has bits; shorter depths fill a byte with one index.
DWORD FillValue(int bitDepth, const RGBQUAD* palette, int paletteSize, const RGBQUAD& colour) {
    switch (bitDepth) {
    case 1:
        return (colour.rgbRed + colour.rgbGreen + colour.rgbBlue) / 3 > 127 ? 0xFF : 0;
    case 4:
    case 8: {
        const int index = NearestEntry(palette, paletteSize, colour.rgbRed, colour.rgbGreen, colour.rgbBlue);
        return static_cast<DWORD>(bitDepth == 4 ? index * 0x11 : index);
    }
    case 16:
        return PackWord(kMasks555, colour.rgbBlue, colour.rgbGreen, colour.rgbRed);
    default:
        return static_cast<DWORD>(colour.rgbBlue) | static_cast<DWORD>(colour.rgbGreen) << 8U |
               static_cast<DWORD>(colour.rgbRed) << 16U;
    }
}

// Fills one row; the bits behind the last pixel stay 0.
void FillRow(const DibView& view, DWORD value, BYTE* row) {
    const auto bits = static_cast<std::size_t>(view.width) * static_cast<std::size_t>(view.bitCount);
    const std::size_t unit = std::max<std::size_t>(static_cast<std::size_t>(view.bitCount) / 8, 1);
    const std::size_t used = (bits + 7) / 8;
    for (std::size_t i = 0; i != used; ++i) {
        row[i] = static_cast<BYTE>(value >> (8 * (i % unit)));
    }
    if (bits % 8 != 0) {
        row[used - 1] &= static_cast<BYTE>(0xFF00U >> (bits % 8));
    }
}

NewPicture NewOfDepth(int width, int height, int bitDepth) {
    RGBQUAD palette[kFixedColours8];
    const int paletteSize = WriteNewPalette(bitDepth, palette);
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
    header.biClrUsed = bitDepth == 8 ? kFixedColours8 : 0;
    std::copy_n(palette, paletteSize, result.Palette());
    DescribeNew(result, static_cast<std::uint32_t>(paletteSize));
    return result;
}

} // namespace

HGLOBAL CreateImage(int width, int height, int bitDepth, BYTE red, BYTE green, BYTE blue, DWORD progressOwner) {
    if (!IsKnownDepth(bitDepth)) {
        SetErrorStatus(QV8_STATUS_DEPTH);
        return nullptr;
    }
    NewPicture result = NewOfDepth(std::max(width, 1), std::max(height, 1), bitDepth);
    if (!result) {
        return nullptr;
    }
    const DibView& view = result.view;
    const DWORD value = FillValue(bitDepth, view.palette, static_cast<int>(view.paletteSize), {blue, green, red, 0});
    FillRow(view, value, result.Row(0));
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
