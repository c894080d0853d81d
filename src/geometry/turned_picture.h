// The pictures that a rotation makes: the turned image and its turned mask.
#pragma once

#include <algorithm>

#include "pixels/pixel_fill.h"
#include "pixels/pixel_format.h"
#include "pixels/pixel_unit.h"

namespace qv8 {

constexpr int kPartPixels = 256; // written at once; a multiple of 8

// A picture and its turned form.
struct TurnedPicture {
    DibView source;
    NewPicture result;
    PixelUnit unit;
    PixelPattern background; // of copied pixels
};

// What the caller asks for, angle clamped.
struct RotationOptions {
    int angle;
    bool mirror;
    bool flip;
    bool smooth;
    RGBQUAD background;
    bool keepSize;
};

inline void FillBackground(const TurnedPicture& picture, int count, BYTE* pixels) {
    const auto bytes = static_cast<std::size_t>(picture.source.layout->Bytes());
    FillPixels(picture.background, pixels, static_cast<std::size_t>(count) * bytes);
}

// Writes pixels start .. start + count of a row of the result, `start` being a multiple of 8: what copy(count, pixels)
// brings for those from `begin` to before `end`, and background around. Unused bytes become 0.
template <class Copy>
void WritePart(const TurnedPicture& picture, int row, int start, int count, int begin, int end, Copy copy) {
    const auto bytes = static_cast<std::size_t>(picture.source.layout->Bytes());
    const DibView& view = picture.result.view;
    BYTE* const resultRow = picture.result.Row(row);
    BYTE indices[kPartPixels];
    BYTE* const pixels = view.layout->SharesBytes() ? indices : resultRow + static_cast<std::size_t>(start) * bytes;
    const int before = std::clamp(begin - start, 0, count);
    const int until = std::clamp(end - start, before, count);
    FillBackground(picture, before, pixels);
    if (before < until) {
        copy(until - before, pixels + static_cast<std::size_t>(before) * bytes);
    }
    FillBackground(picture, count - until, pixels + static_cast<std::size_t>(until) * bytes);
    ClearUnused(*view.layout, pixels + static_cast<std::size_t>(before) * bytes, until - before);
    StorePixels(view, pixels, count, resultRow, start);
}

} // namespace qv8
