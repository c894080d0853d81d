// Conversions that look at one pixel at a time and need no colour to be chosen.
#include <algorithm>
#include <cstring>
#include <numeric>

#include "convert/convert_color.h"
#include "frame/rows.h"
#include "pixels/indices.h"
#include "pixels/luminance_kernels.h"
#include "pixels/pixel_format.h"
#include "pixels/pixel_unit.h"
#include "pixels/planar_chunks.h"

namespace qv8 {
namespace {

// Runs `convert(sourceRow, resultRow)` over all rows and clears what pads them. False when cancelled.
template <class Convert>
bool ConvertRows(const DibView& source, const NewPicture& result, const Progress& progress, Convert convert) {
    return progress.RunWithoutFloats([&] {
        return ForEachRow(source.height, progress, [&](int row) {
            BYTE* const resultRow = result.Row(row);
            convert(source.Row(row), resultRow);
            ClearPadding(result.view, resultRow);
        });
    });
}

void ConvertPixels(const PixelFormat& from, const PixelFormat& to, const BYTE* source, BYTE* result, int width) {
    if (to.layout->IsNothingButBgr() && from.codec.toBgr != nullptr) {
        from.codec.toBgr(source, result, width);
        return;
    }
    if (from.layout->IsNothingButBgr() && to.codec.fromBgr != nullptr) {
        to.codec.fromBgr(source, result, width);
        return;
    }
    ClearBeforeEncoding(to, result, width);
    PlanarChunk chunk;
    ForEachChunk(width, [&](int column, int count) {
        from.Decode(source + from.BytesOf(column), chunk.Row(), count);
        to.Encode(chunk.Row(), result + to.BytesOf(column), count);
    });
}

// What an index becomes at the new depth: a pixel, or a new index.
struct IndexTable {
    DWORD values[256];
};

// The pixels of all entries, encoded at once.
void PackEntries(const FullPalette& palette, const PixelLayout& layout, IndexTable& table) {
    PlanarChunk chunk;
    BYTE pixels[257 * sizeof(DWORD)] = {};
    ThePixelKernels().bgrx.decode(reinterpret_cast<const BYTE*>(palette.colours), chunk.Row(), 256);
    (ThePixelKernels().*layout.codec).encode(chunk.Row(), pixels, 256);
    const DWORD used = 0xFFFFFFFFU >> (32 - layout.bits);
    for (int i = 0; i != 256; ++i) {
        std::memcpy(&table.values[i], pixels + std::ptrdiff_t{i} * layout.Bytes(), sizeof(DWORD));
        table.values[i] &= used;
    }
}

IndexTable MakeIndexTable(const DibView& source, int depth) {
    const FullPalette palette = FullPaletteOf(source);
    IndexTable table;
    if (depth == QV8_DEPTH_GREY) {
        std::transform(palette.colours, palette.colours + 256, table.values, GreyLevelOf);
    } else if (const PixelLayout& layout = *LayoutOfDepth(depth); layout.IsIndexed()) {
        std::iota(table.values, table.values + 256, DWORD{0});
    } else {
        PackEntries(palette, layout, table);
    }
    return table;
}

// Of pixels of three bytes each brings a fourth one, which the next one overwrites; the last one is cut.
template <std::size_t kBytes>
void WriteValues(const IndexTable& table, const BYTE* indices, int count, BYTE* result) {
    constexpr std::size_t kStored = kBytes == 3 ? 4 : kBytes;
    for (int i = 0; i < count - 1; ++i) {
        std::memcpy(result, &table.values[indices[i]], kStored);
        result += kBytes;
    }
    if (count > 0) {
        std::memcpy(result, &table.values[indices[count - 1]], kBytes);
    }
}

// Whether the indices of greys are their levels.
bool IsPlainRamp(const DibView& source) {
    if (source.bitCount != 8 || source.paletteSize < 256) {
        return false;
    }
    for (unsigned i = 0; i != 256; ++i) {
        const RGBQUAD& colour = source.palette[i];
        if (colour.rgbBlue != i || colour.rgbGreen != i || colour.rgbRed != i) {
            return false;
        }
    }
    return true;
}

// Writes pixels of a row from a column on that is a multiple of 8.
void WriteExpanded(const IndexTable& table, const BYTE* indices, int column, int count, const DibView& result,
                   BYTE* resultRow) {
    using Write = void (*)(const IndexTable& table, const BYTE* indices, int count, BYTE* result);
    constexpr Write kWrites[] = {WriteValues<1>, WriteValues<2>, WriteValues<3>, WriteValues<4>}; // by bytes of a pixel
    if (result.layout->SharesBytes()) {
        PackIndices(result.bitCount, indices, count, resultRow, column);
        return;
    }
    const int bytes = result.layout->Bytes();
    kWrites[bytes - 1](table, indices, count, resultRow + std::ptrdiff_t{column} * bytes);
}

} // namespace

bool ConvertTrueColour(const DibView& source, const NewPicture& result, const Progress& progress) {
    const PixelFormat from = PixelFormatOf(source);
    const PixelFormat to = PixelFormatOf(result.view);
    return ConvertRows(source, result, progress, [&](const BYTE* sourceRow, BYTE* resultRow) {
        ConvertPixels(from, to, sourceRow, resultRow, source.width);
    });
}

bool ExpandPalette(const DibView& source, int depth, const NewPicture& result, const Progress& progress) {
    if (result.view.layout->IsNothingButBgr() && IsPlainRamp(source)) {
        return ConvertRows(source, result, progress, [&](const BYTE* sourceRow, BYTE* resultRow) {
            ThePixelKernels().greysToBgr(sourceRow, resultRow, source.width);
        });
    }
    const IndexTable table = MakeIndexTable(source, depth);
    return ConvertRows(source, result, progress, [&](const BYTE* sourceRow, BYTE* resultRow) {
        ForEachChunk(source.width, [&](int column, int count) {
            BYTE indices[kChunkPixels];
            UnpackIndices(source.bitCount, sourceRow, column, count, indices);
            WriteExpanded(table, indices, column, count, result.view, resultRow);
        });
    });
}

} // namespace qv8
