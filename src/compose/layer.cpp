#include "compose/layer.h"

#include <algorithm>

#include "frame/rows.h"
#include "frame/span.h"
#include "frame/status.h"
#include "pixels/colour_reader.h"
#include "pixels/pixel_fill.h"
#include "pixels/pixel_unit.h"
#include "pixels/planar_chunks.h"

namespace qv8 {
namespace {

// Where a picture lies in the result: its first column and lowest row, both ends of 33-bit range.
struct Place {
    std::int64_t column;
    std::int64_t row;
};

struct Layout {
    std::int64_t width;
    std::int64_t height;
    Place base;
    Place layer;
};

// Both in the base's columns and rows from its bottom first, then from the lower left corner of the result.
Layout Arrange(const DibView& base, const DibView& layer, const LayerPlacement& placement) {
    const std::int64_t x = placement.x;
    const std::int64_t y = std::int64_t{base.height} - layer.height - placement.y;
    if (placement.clipToBase) {
        return {base.width, base.height, {0, 0}, {x, y}};
    }
    const std::int64_t left = std::min<std::int64_t>(0, x);
    const std::int64_t bottom = std::min<std::int64_t>(0, y);
    const std::int64_t right = std::max<std::int64_t>(base.width, x + layer.width);
    const std::int64_t top = std::max<std::int64_t>(base.height, y + layer.height);
    return {right - left, top - bottom, {-left, -bottom}, {x - left, y - bottom}};
}

NewPicture CreateResult(const Layout& layout) {
    constexpr std::int64_t kLargestSide = 0x7FFFFFFF;
    const auto width = static_cast<int>(std::min(layout.width, kLargestSide)); // such a side is too large in any case
    const auto height = static_cast<int>(std::min(layout.height, kLargestSide));
    return CreateDib({24, width, height}, InitialPixels::kUnwritten);
}

// What a picture covers of a row of the result; nothing where it does not lie.
Span Covered(const DibView& picture, const Place& place, int row, int width) {
    if (row < place.row || row >= place.row + picture.height) {
        return {0, 0};
    }
    const std::int64_t begin = std::clamp<std::int64_t>(place.column, 0, width);
    const std::int64_t end = std::clamp<std::int64_t>(place.column + picture.width, 0, width);
    return {static_cast<int>(begin), static_cast<int>(end)};
}

struct Composition {
    ColourReader base;
    ColourReader layer;
    Layout layout;
    LayerBlend blend;
    PixelPattern background;
};

void ReadInto(const ColourReader& reader, const Place& place, int row, const Span& span, BYTE* pixels) {
    if (!span.IsEmpty()) {
        ReadPixels24(reader, static_cast<int>(row - place.row), static_cast<int>(span.begin - place.column),
                     span.Count(), pixels);
    }
}

// Lays the layer over pixels of the base that are in the result already.
void BlendInto(const Composition& work, int row, const Span& span, BYTE* pixels) {
    const ColourReader& layer = work.layer;
    const Place& place = work.layout.layer;
    const auto blend = TheLayerKernels().blend24;
    const auto first = static_cast<int>(span.begin - place.column);
    if (layer.picture.layout->IsNothingButBgr()) {
        const BYTE* const source = layer.picture.Row(static_cast<int>(row - place.row));
        blend(work.blend, source + std::ptrdiff_t{first} * 3, pixels, span.Count());
        return;
    }
    ForEachChunk(span.Count(), [&](int start, int part) {
        BYTE converted[kChunkPixels * 3];
        ReadPixels24(layer, static_cast<int>(row - place.row), first + start, part, converted);
        blend(work.blend, converted, pixels + std::ptrdiff_t{start} * 3, part);
    });
}

// The background where neither picture lies; the base; then the layer, which stands alone on both sides of the base.
void ComposeRow(const Composition& work, int row, int width, BYTE* result) {
    const auto at = [result](int column) { return result + std::ptrdiff_t{column} * 3; };
    const Span base = Covered(work.base.picture, work.layout.base, row, width);
    const Span layer = Covered(work.layer.picture, work.layout.layer, row, width);
    if (base.Count() != width && layer.Count() != width) {
        FillPixels(work.background, result, static_cast<std::size_t>(width) * 3);
    }
    ReadInto(work.base, work.layout.base, row, base, at(base.begin));
    const Span both = {std::max(base.begin, layer.begin), std::min(base.end, layer.end)};
    if (both.IsEmpty()) {
        ReadInto(work.layer, work.layout.layer, row, layer, at(layer.begin));
        return;
    }
    ReadInto(work.layer, work.layout.layer, row, {layer.begin, both.begin}, at(layer.begin));
    ReadInto(work.layer, work.layout.layer, row, {both.end, layer.end}, at(both.end));
    if (work.blend.opacity != 0) {
        BlendInto(work, row, both, at(both.begin));
    }
}

bool OpenPictures(HGLOBAL baseImage, HGLOBAL layerImage, Picture& base, Picture& layer) {
    if (baseImage == nullptr || layerImage == nullptr) {
        return Fail(QV8_STATUS_PICTURE);
    }
    const bool baseFound = LockPicture(baseImage, base);
    const bool layerFound = LockPicture(layerImage, layer);
    if (!base.lock || !layer.lock) {
        return Fail(QV8_STATUS_MEMORY);
    }
    const auto accepts = [](Picture& picture) {
        return CheckPicture(picture) && CheckDibFormat(picture.view, kAcceptAll);
    };
    // Of all effects only this one tells a refused picture by the status of a depth.
    return (baseFound && layerFound && accepts(base) && accepts(layer)) || Fail(QV8_STATUS_DEPTH);
}

} // namespace

HGLOBAL Layer(HGLOBAL baseImage, HGLOBAL layerImage, const LayerBlend& blend, const BYTE (&background)[3],
              const LayerPlacement& placement, const Progress& progress) {
    Picture base;
    Picture layer;
    if (!OpenPictures(baseImage, layerImage, base, layer)) {
        return nullptr;
    }
    const Composition work = {MakeColourReader(base.view), MakeColourReader(layer.view),
                              Arrange(base.view, layer.view, placement), blend, RepeatPixel(background, 3)};
    NewPicture result = CreateResult(work.layout);
    if (!result) {
        return nullptr;
    }
    const int width = result.view.width;
    const bool done = ForEachRow(result.view.height, progress, [&](int row) {
        ComposeRow(work, row, width, result.Row(row));
        ClearPadding(result.view, result.Row(row));
    });
    return done ? result.Release() : nullptr;
}

} // namespace qv8
