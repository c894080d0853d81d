#include "pixels/colour_reader.h"

#include <cstring>

#include "pixels/indices.h"
#include "pixels/planar_chunks.h"

namespace qv8 {
namespace {

void ReadPalette(const ColourReader& reader, const BYTE* row, int column, int count, const PlanarRow& result) {
    ForEachChunk(count, [&](int start, int part) {
        BYTE indices[kChunkPixels + 8];
        const BYTE* const first = UnpackFrom(reader.picture.bitCount, row, column + start, part, indices);
        DecodePixels(reader, first, part, result.From(start));
    });
}

} // namespace

ColourReader MakeColourReader(const DibView& picture) {
    return {picture, PixelFormatOf(picture), picture.IsPaletted() ? FullPaletteOf(picture) : FullPalette{}};
}

void ReadColours(const ColourReader& reader, int row, int column, int count, const PlanarRow& result) {
    const BYTE* const source = reader.picture.Row(row);
    if (reader.picture.IsPaletted()) {
        ReadPalette(reader, source, column, count, result);
    } else {
        DecodePixels(reader, source + reader.format.BytesOf(column), count, result);
    }
}

void DecodePixels(const ColourReader& reader, const BYTE* pixels, int count, const PlanarRow& result) {
    if (!reader.picture.IsPaletted()) {
        reader.format.Decode(pixels, result, count);
        return;
    }
    for (int i = 0; i != count; ++i) {
        const RGBQUAD& colour = reader.palette.colours[pixels[i]];
        result.blue[i] = colour.rgbBlue;
        result.green[i] = colour.rgbGreen;
        result.red[i] = colour.rgbRed;
    }
}

const BYTE* Pixels24(const ColourReader& reader, int row, int column, int count, BYTE* room) {
    const PixelFormat& format = reader.format;
    const BYTE* const source = reader.picture.Row(row) + format.BytesOf(column);
    if (format.layout->IsNothingButBgr()) {
        return source;
    }
    if (format.codec.toBgr != nullptr) {
        format.codec.toBgr(source, room, count);
        return room;
    }
    ForEachChunk(count, [&](int start, int part) {
        PlanarChunk chunk;
        ReadColours(reader, row, column + start, part, chunk.Row());
        ThePixelKernels().bgr.encode(chunk.Row(), room + std::ptrdiff_t{start} * 3, part);
    });
    return room;
}

void ReadPixels24(const ColourReader& reader, int row, int column, int count, BYTE* result) {
    const BYTE* const pixels = Pixels24(reader, row, column, count, result);
    if (pixels != result) {
        std::memcpy(result, pixels, static_cast<std::size_t>(count) * 3);
    }
}

} // namespace qv8
