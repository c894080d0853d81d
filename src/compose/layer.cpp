#include "compose/layer.h"

#include <algorithm>
#include <cstring>

#include "frame/rows.h"
#include "pixels/colour_reader.h"
#include "pixels/pixel_fill.h"
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
    const std::uint32_t bytes = DibBytes(kHeaderBytes, 24, width, height);
    NewPicture result = AllocatePicture(bytes, Pixels::kUnwritten);
    if (!result) {
        return result;
    }
    BITMAPINFOHEADER& header = result.Header();
    header = {};
    header.biSize = kHeaderBytes;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 24;
    header.biSizeImage = bytes - static_cast<DWORD>(kHeaderBytes);
    DescribeNew(result, 0);
    return result;
}

// A part of a row, as columns of the result.
struct Stretch {
    int begin;
    int end;
};

// What a picture covers of a row of the result; nothing where it does not lie.
Stretch Covered(const DibView& picture, const Place& place, int row, int width) {
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

void ReadInto(const ColourReader& reader, const Place& place, int row, const Stretch& span, BYTE* pixels) {
    if (span.begin < span.end) {
        ReadPixels24(reader, static_cast<int>(row - place.row), static_cast<int>(span.begin - place.column),
                     span.end - span.begin, pixels);
    }
}

// Lays the layer over pixels of the base that are in the result already.
void BlendInto(const Composition& work, int row, const Stretch& span, BYTE* pixels) {
    const ColourReader& layer = work.layer;
    const Place& place = work.layout.layer;
    const auto blend = TheLayerKernels().blend24;
    const auto first = static_cast<int>(span.begin - place.column);
    if (layer.picture.layout->IsNothingButBgr()) {
        const BYTE* const source = layer.picture.Row(static_cast<int>(row - place.row));
        blend(work.blend, source + std::ptrdiff_t{first} * 3, pixels, span.end - span.begin);
        return;
    }
    ForEachChunk(span.end - span.begin, [&](int start, int part) {
        BYTE converted[kChunkPixels * 3];
        ReadPixels24(layer, static_cast<int>(row - place.row), first + start, part, converted);
        blend(work.blend, converted, pixels + std::ptrdiff_t{start} * 3, part);
    });
}

// The background where neither picture lies; the base; then the layer, which stands alone on both sides of the base.
void ComposeRow(const Composition& work, int row, int width, BYTE* result) {
    const auto at = [result](int column) { return result + std::ptrdiff_t{column} * 3; };
    const Stretch base = Covered(work.base.picture, work.layout.base, row, width);
    const Stretch layer = Covered(work.layer.picture, work.layout.layer, row, width);
    if (base.end - base.begin != width && layer.end - layer.begin != width) {
        FillPixels(work.background, result, static_cast<std::size_t>(width) * 3);
    }
    ReadInto(work.base, work.layout.base, row, base, at(base.begin));
    const Stretch both = {std::max(base.begin, layer.begin), std::min(base.end, layer.end)};
    if (both.begin >= both.end) {
        ReadInto(work.layer, work.layout.layer, row, layer, at(layer.begin));
        return;
    }
    ReadInto(work.layer, work.layout.layer, row, {layer.begin, both.begin}, at(layer.begin));
    ReadInto(work.layer, work.layout.layer, row, {both.end, layer.end}, at(both.end));
    if (work.blend.opacity != 0) {
        BlendInto(work, row, both, at(both.begin));
    }
}

bool Fail(int status) {
    SetErrorStatus(status);
    return false;
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
              const LayerPlacement& placement, DWORD progressOwner) {
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
    const std::size_t used = static_cast<std::size_t>(width) * 3;
    const bool done = ForEachRow(result.view.height, Progress{progressOwner}, [&](int row) {
        ComposeRow(work, row, width, result.Row(row));
        std::memset(result.Row(row) + used, 0, result.view.stride - used);
    });
    return done ? result.Release() : nullptr;
}

} // namespace qv8
