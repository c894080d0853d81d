#include "filter/mosaic.h"

#include <algorithm>
#include <cstring>

#include "area/area_rows.h"
#include "filter/box_mean_kernels.h"
#include "filter/filter_frame.h"
#include "frame/block_parts.h"
#include "frame/parts.h"
#include "frame/progress.h"
#include "frame/status.h"
#include "pixels/bit_copy.h"
#include "pixels/colour_reader.h"
#include "pixels/indices.h"
#include "pixels/nearest_colours.h"

namespace qv8 {
namespace {

constexpr int kMaxSummedRows = 0xFFFF / 255; // of samples in 16 bits
constexpr int kMaxSummedColumns = 0xFFFF;    // of such sums in 32 bits

// Blocks side by side, from the area's first column to its last, or as far as the picture goes.
struct BlockRow {
    int width = 0; // of a block
    int left = 0;
    int end = 0; // the column behind the last block
    int count = 0;
    int readFrom = 0; // the last multiple of 8 that is not behind `left`, where reading a row begins

    int Begin(int block) const {
        return left + block * width;
    }
    int End(int block) const {
        return width < end - Begin(block) ? Begin(block) + width : end;
    }
};

// Working memory for a row of blocks. Rows begin at the column `readFrom`.
struct MosaicRows {
    LockedBlock memory;
    std::uint64_t* sums = nullptr; // blue, green and red of each block
    WORD* columns[3] = {};         // sums of each channel of a column, `step` apart
    int step = 1;
    BYTE* packed = nullptr; // the same of a row of the picture: packed bytes of channels, else planar ones
    PlanarRow channels = {};
    std::size_t samples = 0; // of one row, with room for loops that go on beyond its end
    PlanarRow means = {};    // channels, or in `blue` indices
    BYTE* painted = nullptr; // a row of the result, from column 0 on
};

struct MosaicCall {
    const DibView& source;
    const Area& area;
    const NewPicture& result;
    ColourReader reader;
    NearestColours nearest; // of a picture with a colour table
    BlockRow blocks;
    MosaicRows rows;
};

bool AllocateRows(const DibView& source, const BlockRow& blocks, MosaicRows& rows) {
    const bool packed = source.layout->isBgr;
    const auto pixels = static_cast<std::uint64_t>(blocks.end - blocks.readFrom) + kFilterSlack;
    rows.step = packed ? source.layout->Bytes() : 1;
    const std::uint64_t samples = pixels * static_cast<std::uint64_t>(packed ? rows.step : 3);
    BYTE* means = nullptr;
    rows.memory = AllocateParts([&](BlockParts& parts) {
        parts.Take(rows.sums, static_cast<std::uint64_t>(blocks.count) * 3);
        parts.Take(rows.columns[0], samples);
        parts.Take(rows.packed, samples);
        parts.Take(means, pixels * 3);
        parts.Take(rows.painted, source.stride);
    });
    if (!rows.memory) {
        return false;
    }
    rows.samples = static_cast<std::size_t>(samples);
    const auto plane = static_cast<std::size_t>(pixels);
    for (std::size_t channel = 1; channel < 3; ++channel) {
        rows.columns[channel] = rows.columns[0] + channel * (packed ? 1 : plane);
    }
    rows.channels = {rows.packed, rows.packed + plane, rows.packed + 2 * plane};
    rows.means = {means, means + plane, means + 2 * plane};
    return true;
}

// Adds a row of the picture to the sums of its columns.
void AddRow(const MosaicCall& call, int row) {
    const MosaicRows& rows = call.rows;
    const int count = call.blocks.end - call.blocks.readFrom;
    const auto slide = TheBoxMeanKernels().slide;
    if (rows.step > 1) {
        const std::size_t bytes = static_cast<std::size_t>(count) * static_cast<std::size_t>(rows.step);
        std::memcpy(rows.packed, call.source.Row(row) + std::ptrdiff_t{call.blocks.readFrom} * rows.step, bytes);
        slide(rows.packed, nullptr, count * rows.step, rows.columns[0]);
        return;
    }
    ReadColours(call.reader, row, call.blocks.readFrom, count, rows.channels);
    slide(rows.channels.blue, nullptr, count, rows.columns[0]);
    slide(rows.channels.green, nullptr, count, rows.columns[1]);
    slide(rows.channels.red, nullptr, count, rows.columns[2]);
}

// Adds the sums of the columns to those of their blocks and clears them.
void AddColumns(const MosaicCall& call) {
    const BlockRow& blocks = call.blocks;
    const MosaicRows& rows = call.rows;
    const WORD* const* const columns = rows.columns;
    for (int block = 0; block < blocks.count; ++block) {
        std::uint64_t* const sums = rows.sums + std::ptrdiff_t{block} * 3;
        ForEachPart(blocks.End(block) - blocks.Begin(block), kMaxSummedColumns, [&](int start, int count) {
            const std::ptrdiff_t begin = std::ptrdiff_t{blocks.Begin(block) - blocks.readFrom + start} * rows.step;
            const std::ptrdiff_t end = begin + std::ptrdiff_t{count} * rows.step;
            std::uint32_t blue = 0;
            std::uint32_t green = 0;
            std::uint32_t red = 0;
            for (std::ptrdiff_t i = begin; i < end; i += rows.step) {
                blue += columns[0][i];
                green += columns[1][i];
                red += columns[2][i];
            }
            sums[0] += blue;
            sums[1] += green;
            sums[2] += red;
        });
    }
    std::memset(rows.columns[0], 0, rows.samples * sizeof(WORD));
}

BYTE Mean(std::uint64_t sum, std::uint64_t pixels) {
    return static_cast<BYTE>((sum | pixels) <= 0xFFFFFFFFU
                                 ? static_cast<std::uint32_t>(sum) / static_cast<std::uint32_t>(pixels)
                                 : sum / pixels);
}

// Gives the samples of a block their mean, eight at a time: behind the block the next one follows, or room for that.
// Most blocks are too small for a call of memset to pay.
void Repeat(BYTE mean, std::ptrdiff_t count, BYTE* samples) {
    const std::uint64_t eight = mean * 0x0101010101010101ULL;
    for (std::ptrdiff_t i = 0; i < count; i += 8) {
        std::memcpy(samples + i, &eight, sizeof eight);
    }
}

// Makes the means of the blocks that begin in `row`. False when memory is short.
bool MeanBlocks(MosaicCall& call, int row, int endRow) {
    const BlockRow& blocks = call.blocks;
    const MosaicRows& rows = call.rows;
    std::memset(rows.sums, 0, static_cast<std::size_t>(blocks.count) * 3 * sizeof *rows.sums);
    for (int begin = row; begin < endRow; begin += kMaxSummedRows) {
        for (int y = begin; y < std::min(begin + kMaxSummedRows, endRow); ++y) {
            AddRow(call, y);
        }
        AddColumns(call);
    }
    for (int block = 0; block < blocks.count; ++block) {
        const int begin = blocks.Begin(block) - blocks.readFrom;
        const std::ptrdiff_t width = blocks.End(block) - blocks.Begin(block);
        const std::uint64_t pixels = static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(endRow - row);
        const std::uint64_t* const sums = rows.sums + std::ptrdiff_t{block} * 3;
        const BYTE blue = Mean(sums[0], pixels);
        const BYTE green = Mean(sums[1], pixels);
        const BYTE red = Mean(sums[2], pixels);
        if (call.source.IsPaletted()) {
            BYTE index = 0;
            if (!FindNearest(call.nearest, red, green, blue, index)) {
                return false;
            }
            Repeat(index, width, rows.means.blue + begin);
        } else {
            Repeat(blue, width, rows.means.blue + begin);
            Repeat(green, width, rows.means.green + begin);
            Repeat(red, width, rows.means.red + begin);
        }
    }
    return true;
}

// Makes the packed row of the means; pixels that keep unused bytes are packed where they go.
void PackMeans(const MosaicCall& call) {
    const MosaicRows& rows = call.rows;
    const int column = call.blocks.readFrom;
    const int count = call.blocks.end - column;
    const PixelFormat& format = call.reader.format;
    if (call.source.IsPaletted()) {
        PackIndices(call.source.bitCount, rows.means.blue, count, rows.painted, column);
    } else if (format.layout->unusedBytes == 0) {
        format.Encode(rows.means, rows.painted + format.BytesOf(column), count);
    }
}

void PaintRow(const MosaicCall& call, int row) {
    const DibView& source = call.source;
    BYTE* const result = call.result.Row(row);
    // Whole rows are painted but for what may follow their last pixel.
    const bool keepsUnused = source.layout->unusedBytes != 0;
    const bool whole = call.area.mask == nullptr && !keepsUnused;
    const std::size_t copyFrom = whole ? source.stride - 4 : 0;
    std::memcpy(result + copyFrom, source.Row(row) + copyFrom, source.stride - copyFrom);
    ForEachRun(call.area, row, [&](int column, int count) {
        if (keepsUnused) {
            const PixelFormat& format = call.reader.format;
            format.Encode(call.rows.means.From(column - call.blocks.readFrom), result + format.BytesOf(column), count);
        } else {
            const auto bits = static_cast<std::size_t>(source.bitCount);
            const std::size_t begin = bits * static_cast<std::size_t>(column);
            CopyBits(call.rows.painted, begin, result, begin, bits * static_cast<std::size_t>(count));
        }
    });
}

// False when cancelled or memory is short.
bool PaintBlocks(MosaicCall& call, int blockHeight, const Progress& progress) {
    const WorkRect& rect = call.area.rect;
    CopyRows(call.source, 0, rect.firstRow, call.result);
    int row = rect.firstRow;
    while (row <= rect.lastRow) {
        const int endRow = blockHeight < call.source.height - row ? row + blockHeight : call.source.height;
        if (!MeanBlocks(call, row, endRow)) {
            return false;
        }
        PackMeans(call);
        for (int y = row; y < endRow && y <= rect.lastRow; ++y) {
            PaintRow(call, y);
        }
        if (!progress.Report(row - rect.firstRow, rect.lastRow - rect.firstRow)) {
            return false;
        }
        row = endRow;
    }
    CopyRows(call.source, rect.lastRow + 1, call.source.height, call.result);
    return true;
}

BlockRow LayBlocks(const DibView& source, const WorkRect& rect, int blockWidth) {
    BlockRow result;
    result.width = std::min(blockWidth, source.width);
    result.left = rect.left;
    result.count = (rect.Width() - 1) / result.width + 1;
    const std::int64_t end = rect.left + std::int64_t{result.count} * result.width;
    result.end = static_cast<int>(std::min<std::int64_t>(end, source.width));
    result.readFrom = rect.left / 8 * 8;
    return result;
}

HGLOBAL MosaicArea(const DibView& source, const Area& area, int blockWidth, int blockHeight, const Progress& progress) {
    NewPicture result = DuplicateDib(source, InitialPixels::kUnwritten);
    if (!result) {
        return nullptr;
    }
    MosaicCall call = {source, area, result, MakeColourReader(source), {}, LayBlocks(source, area.rect, blockWidth),
                       {}};
    if (!AllocateRows(source, call.blocks, call.rows) ||
        (source.IsPaletted() && !MakeNearestColours(source, call.nearest))) {
        return nullptr;
    }
    return PaintBlocks(call, blockHeight, progress) ? result.Release() : nullptr;
}

} // namespace

HGLOBAL Mosaic(const AreaArguments& areaArguments, int blockWidth, int blockHeight, const Progress& progress) {
    if (areaArguments.target.hImage != nullptr && blockWidth < 2 && blockHeight < 2) {
        return Fail(QV8_STATUS_PARAMETER);
    }
    Picture source;
    Area area;
    if (!OpenArea(areaArguments, kAcceptAll, true, source, area)) {
        return nullptr;
    }
    return MosaicArea(source.view, area, std::max(blockWidth, 1), std::max(blockHeight, 1), progress);
}

} // namespace qv8
