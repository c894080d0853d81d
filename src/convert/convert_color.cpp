#include "convert/convert_color.h"

#include <algorithm>

#include "convert/reduction.h"
#include "frame/status.h"
#include "pixels/palettes.h"

namespace qv8 {
namespace {

bool IsConvertible(int sourceDepth, int depth) {
    return sourceDepth != depth && LayoutOfDepth(sourceDepth) != nullptr &&
           LayoutOfDepth(BitsOfDepth(depth)) != nullptr;
}

// The table of an expanded picture: a grey ramp, or the source's colours.
void WriteExpandedPalette(const DibView& source, int depth, RGBQUAD* palette) {
    if (depth == QV8_DEPTH_GREY) {
        WriteGreyRamp(palette, 256);
    } else if (LayoutOfDepth(depth)->IsIndexed()) {
        std::transform(source.palette, source.palette + source.paletteSize, palette,
                       [](const RGBQUAD& entry) -> RGBQUAD {
                           return {entry.rgbBlue, entry.rgbGreen, entry.rgbRed, 0};
                       });
    }
}

HGLOBAL Expand(const DibView& source, int depth, const Progress& progress) {
    const bool isGrey = depth == QV8_DEPTH_GREY;
    const std::uint32_t kept = !isGrey && LayoutOfDepth(depth)->IsIndexed() ? source.paletteSize : 0;
    NewPicture result = NewConverted(source, depth, isGrey ? 256 : kept, kept, InitialPixels::kUnwritten);
    if (!result) {
        return nullptr;
    }
    WriteExpandedPalette(source, depth, result.Palette());
    const bool done = source.IsPaletted() ? ExpandPalette(source, depth, result, progress)
                                          : ConvertTrueColour(source, result, progress);
    return done ? result.Release() : nullptr;
}

HGLOBAL ReduceDirectly(const DibView& source, int depth, const Progress& progress) {
    NewPicture result = NewConverted(source, depth, 0, 0, InitialPixels::kUnwritten);
    return result && ConvertTrueColour(source, result, progress) ? result.Release() : nullptr;
}

} // namespace

NewPicture NewConverted(const DibView& source, int depth, std::uint32_t paletteSize, std::uint32_t colorsUsed,
                        InitialPixels pixels) {
    NewPicture result = CreateDib({BitsOfDepth(depth), source.width, source.height, paletteSize, colorsUsed}, pixels);
    if (result) {
        result.Header().biXPelsPerMeter = source.header->biXPelsPerMeter;
        result.Header().biYPelsPerMeter = source.header->biYPelsPerMeter;
    }
    return result;
}

HGLOBAL ConvertColor(HGLOBAL image, WORD bitDepth, bool fixedPalette, bool dither, BYTE threshold,
                     const Progress& progress) {
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
        return Fail(QV8_STATUS_PARAMETER);
    }
    if (!CheckPicture(source) || !CheckDibFormat(source.view, kAcceptAll)) {
        return nullptr;
    }
    if (sourceDepth <= BitsOfDepth(depth)) {
        return Expand(source.view, depth, progress);
    }
    if (!LayoutOfDepth(BitsOfDepth(depth))->IsIndexed()) {
        return ReduceDirectly(source.view, depth, progress);
    }
    return ReduceColours(source.view, {depth, fixedPalette, dither, threshold}, progress);
}

} // namespace qv8
