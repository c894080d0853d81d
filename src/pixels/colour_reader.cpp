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
        DecodePixels(reader, first, part, {result.blue + start, result.green + start, result.red + start});
    });
}

} // namespace

ColourReader MakeColourReader(const DibView& picture) {
    ColourReader reader = {picture, {}, {}};
    if (picture.IsPaletted()) {
        reader.palette = FullPaletteOf(picture);
    } else {
        reader.format = PixelFormatOf(picture.bitCount, picture.masks);
    }
    return reader;
}

void ReadColours(const ColourReader& reader, int row, int column, int count, const PlanarRow& result) {
    const BYTE* const source = reader.picture.Row(row);
    if (reader.picture.IsPaletted()) {
        ReadPalette(reader, source, column, count, result);
    } else {
        DecodePixels(reader, source + std::ptrdiff_t{column} * reader.format.bytesPerPixel, count, result);
    }
}

void DecodePixels(const ColourReader& reader, const BYTE* pixels, int count, const PlanarRow& result) {
    if (!reader.picture.IsPaletted()) {
        reader.format.decode(reader.format.masks, pixels, result, count);
        return;
    }
    for (int i = 0; i != count; ++i) {
        const RGBQUAD& colour = reader.palette.colours[pixels[i]];
        result.blue[i] = colour.rgbBlue;
        result.green[i] = colour.rgbGreen;
        result.red[i] = colour.rgbRed;
    }
}

void ReadPixels24(const ColourReader& reader, int row, int column, int count, BYTE* result) {
    const int bitCount = reader.picture.bitCount;
    const BYTE* const source = reader.picture.Row(row);
    if (bitCount == 24) {
        std::memcpy(result, source + std::ptrdiff_t{column} * 3, static_cast<std::size_t>(count) * 3);
        return;
    }
    if (bitCount == 32) {
        ThePixelKernels().narrow32(source + std::ptrdiff_t{column} * 4, result, count);
        return;
    }
    PlanarChunk chunk;
    ForEachChunk(count, [&](int start, int part) {
        ReadColours(reader, row, column + start, part, chunk.Row());
        ThePixelKernels().encode24({}, chunk.Row(), result + std::ptrdiff_t{start} * 3, part);
    });
}

} // namespace qv8
