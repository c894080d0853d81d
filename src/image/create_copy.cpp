#include "image/create_copy.h"

#include <algorithm>
#include <cstring>

#include "frame/rows.h"
#include "frame/status.h"
#include "pixels/palettes.h"
#include "pixels/pixel_fill.h"
#include "pixels/write_rows.h"

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
    const auto colours = static_cast<std::uint32_t>(paletteSize);
    const bool isFull = paletteSize == 0 || paletteSize == 1 << bitDepth;
    NewPicture result = CreateDib({bitDepth, width, height, colours, isFull ? 0 : colours}, InitialPixels::kUnwritten);
    if (result) {
        std::copy_n(palette, paletteSize, result.Palette());
    }
    return result;
}

} // namespace

HGLOBAL CreateImage(int width, int height, int bitDepth, BYTE red, BYTE green, BYTE blue, const Progress& progress) {
    if (LayoutOfDepth(bitDepth) == nullptr) {
        return Fail(QV8_STATUS_DEPTH);
    }
    NewPicture result = NewOfDepth(std::max(width, 1), std::max(height, 1), bitDepth);
    if (!result) {
        return nullptr;
    }
    const DibView& view = result.view;
    const RGBQUAD colour = ToFill(view, {blue, green, red, 0});
    FillRow(PackedPatternOf(view, colour), view, result.Row(0));
    const auto repeat = [&](int row) {
        if (row > 0) {
            std::memcpy(result.Row(row), result.Row(0), view.stride);
        }
    };
    const bool done = progress.RunWithoutFloats([&] { return ForEachRow(view.height, progress, repeat); });
    return done ? result.Release() : nullptr;
}

HGLOBAL CopyImage(HGLOBAL image, const Progress& progress) {
    Picture source;
    if (!LockPicture(image, source) || !CheckPicture(source)) {
        return nullptr;
    }
    const DibView& view = source.view;
    return progress.RunWithoutFloats([&] {
        return WriteRows(DuplicateDib(view, InitialPixels::kUnwritten), progress,
                         [&](int row, BYTE* resultRow) { std::memcpy(resultRow, view.Row(row), view.stride); });
    });
}

} // namespace qv8
