// Conversions that look at one pixel at a time and need no colour to be chosen.
#include <cstring>

#include "convert/convert_color.h"
#include "frame/rows.h"
#include "pixels/indices.h"
#include "pixels/luminance.h"
#include "pixels/pixel_kernels.h"
#include "pixels/planar_chunks.h"

namespace qv8 {
namespace {

// Runs `convert(sourceRow, resultRow)` over all rows and clears what pads them. False when cancelled.
template <class Convert>
bool ConvertRows(const DibView& source, const NewPicture& result, const Progress& progress, Convert convert) {
    const std::size_t used =
        (static_cast<std::size_t>(source.width) * static_cast<unsigned>(result.view.bitCount) + 7) / 8;
    return ForEachRow(source.height, progress, [&](int row) {
        BYTE* const resultRow = result.Row(row);
        convert(source.Row(row), resultRow);
        std::memset(resultRow + used, 0, result.view.stride - used);
    });
}

void ConvertPixels(const PixelFormat& from, const PixelFormat& to, const BYTE* source, BYTE* result, int width) {
    const PixelKernels& kernels = ThePixelKernels();
    if (from.bytesPerPixel == 3 && to.bytesPerPixel == 4) {
        kernels.widen24(source, result, width);
        return;
    }
    if (from.bytesPerPixel == 4 && to.bytesPerPixel == 3) {
        kernels.narrow32(source, result, width);
        return;
    }
    if (to.bytesPerPixel == 4) { // fourth bytes, which encoding leaves alone
        std::memset(result, 0, static_cast<std::size_t>(width) * 4);
    }
    PlanarChunk chunk;
    const PlanarRow planar = chunk.Row();
    ForEachChunk(width, [&](int column, int count) {
        from.decode(from.masks, source + std::ptrdiff_t{column} * from.bytesPerPixel, planar, count);
        to.encode(to.masks, planar, result + std::ptrdiff_t{column} * to.bytesPerPixel, count);
    });
}

// What an index becomes at the new depth: a pixel of 2, 3 or 4 bytes, or a new index.
struct IndexTable {
    DWORD values[256];
};

DWORD ValueOf(const RGBQUAD& colour, unsigned index, int depth) {
    switch (depth) {
    case QV8_DEPTH_GREY:
        return GreyLevelOf(colour);
    case 16:
        return PackWord(kMasks555, colour.rgbBlue, colour.rgbGreen, colour.rgbRed);
    case 24:
    case 32:
        return static_cast<DWORD>(colour.rgbBlue) | static_cast<DWORD>(colour.rgbGreen) << 8U |
               static_cast<DWORD>(colour.rgbRed) << 16U;
    default:
        return index;
    }
}

IndexTable MakeIndexTable(const DibView& source, int depth) {
    const FullPalette palette = FullPaletteOf(source);
    IndexTable table;
    for (unsigned i = 0; i != 256; ++i) {
        table.values[i] = ValueOf(palette.colours[i], i, depth);
    }
    return table;
}

template <int kBytes>
void WriteValues(const IndexTable& table, const BYTE* indices, int count, BYTE* result) {
    for (int i = 0; i < count; ++i) {
        const DWORD value = table.values[indices[i]];
        for (int k = 0; k < kBytes; ++k) {
            result[kBytes * i + k] = static_cast<BYTE>(value >> (8 * k));
        }
    }
}

void WriteExpanded(const IndexTable& table, const BYTE* indices, int column, int count, int bits, BYTE* resultRow) {
    BYTE* const result = resultRow + std::ptrdiff_t{column / 8} * bits; // columns are multiples of 8
    switch (bits) {
    case 4:
        PackIndices(bits, indices, count, resultRow, column);
        break;
    case 8:
        WriteValues<1>(table, indices, count, result);
        break;
    case 16:
        WriteValues<2>(table, indices, count, result);
        break;
    case 24:
        WriteValues<3>(table, indices, count, result);
        break;
    default:
        WriteValues<4>(table, indices, count, result);
        break;
    }
}

} // namespace

bool ConvertTrueColour(const DibView& source, const NewPicture& result, const Progress& progress) {
    const PixelFormat from = PixelFormatOf(source.bitCount, source.masks);
    const PixelFormat to = PixelFormatOf(result.view.bitCount, kMasks555);
    return ConvertRows(source, result, progress, [&](const BYTE* sourceRow, BYTE* resultRow) {
        ConvertPixels(from, to, sourceRow, resultRow, source.width);
    });
}

bool ExpandPalette(const DibView& source, int depth, const NewPicture& result, const Progress& progress) {
    const IndexTable table = MakeIndexTable(source, depth);
    return ConvertRows(source, result, progress, [&](const BYTE* sourceRow, BYTE* resultRow) {
        ForEachChunk(source.width, [&](int column, int count) {
            BYTE indices[kChunkPixels];
            UnpackIndices(source.bitCount, sourceRow, column, count, indices);
            WriteExpanded(table, indices, column, count, result.view.bitCount, resultRow);
        });
    });
}

} // namespace qv8
