#include "geometry/resize_smooth.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "frame/block_parts.h"
#include "geometry/resize_cells.h"
#include "pixels/pixel_unit.h"
#include "qv8com.h"

namespace qv8 {
namespace {

struct Blender {
    CellReader reader;
    LockedBlock block = {};

    // All in the block.
    int* cell = nullptr; // of new columns
    float* right = nullptr;
    float* left = nullptr;
    CellRow lower = {};
    CellRow upper = {};
    CellRow blendedLower = {};
    CellRow blendedUpper = {};
    BYTE* resultLine[kMaxChannels] = {};

    int columns = 0;       // new ones that have a cell
    int columnsBefore = 0; // those of all cells but the last
    int heldRow = -1;      // the row whose cells are in the upper ones

    int LastCell() const {
        return reader.cellCount - 1;
    }
};

void LayOut(Blender& blender, BlockParts& parts) {
    const CellReader& reader = blender.reader;
    const auto newWidth = static_cast<std::uint64_t>(reader.task.columns.newSize);
    const auto step = static_cast<std::uint64_t>(reader.step);
    const auto cells = static_cast<std::uint64_t>(reader.cellCount) + 1;
    parts.Take(blender.cell, newWidth);
    parts.Take(blender.right, newWidth);
    parts.Take(blender.left, newWidth);
    for (int c = 0; c != reader.channels; ++c) {
        for (CellRow* const row : {&blender.lower, &blender.upper}) {
            parts.Take(row->channels[c], cells * step + kSlack);
        }
        for (CellRow* const row : {&blender.blendedLower, &blender.blendedUpper}) {
            parts.Take(row->channels[c], newWidth * step + kSlack);
        }
        if (!reader.IsPacked()) {
            parts.Take(blender.resultLine[c], newWidth);
        }
    }
}

void DescribeColumns(Blender& blender) {
    int index = 0;
    ForEachGroup(blender.reader.task.columns, [&](const PixelGroup& group) {
        const float step = 1.0F / static_cast<float>(std::max(group.resultCount, 1));
        for (int i = 0; i != group.resultCount; ++i) {
            const int column = group.resultFirst + i;
            blender.cell[column] = index;
            blender.right[column] = step * static_cast<float>(i);
            blender.left[column] = 1.0F - blender.right[column];
        }
        ++index;
    });
    blender.columns = blender.reader.task.map.count;
    int* const end = blender.cell + blender.columns;
    blender.columnsBefore = static_cast<int>(std::lower_bound(blender.cell, end, blender.LastCell()) - blender.cell);
}

bool MakeBlender(Blender& blender) {
    if (!MakeCellReader(blender.reader)) {
        return false;
    }
    blender.block = AllocateParts([&](BlockParts& parts) { LayOut(blender, parts); });
    if (!blender.block) {
        return false;
    }
    DescribeColumns(blender);
    return true;
}

// Blends the columns from `first` on.
void BlendColumns(const Blender& blender, int first, const CellRow& cells, const CellRow& blended) {
    const CellReader& reader = blender.reader;
    const ColumnWeights weights = {blender.cell + first, blender.right + first, blender.left + first};
    const auto blend = reader.IsPacked() ? reader.kernels.blendTriples : reader.kernels.blendColumns;
    for (int c = 0; c != reader.channels; ++c) {
        blend(cells.channels[c], weights, blended.channels[c] + reader.Samples(first), blender.columns - first);
    }
}

// Gives the last column of a row of cells a neighbour to its right: a copy of the last cell of `from`.
void SetBehindLast(const Blender& blender, const CellRow& cells, const CellRow& from) {
    const CellReader& reader = blender.reader;
    for (int c = 0; c != reader.channels; ++c) {
        std::copy_n(from.channels[c] + reader.Samples(blender.LastCell()), reader.step,
                    cells.channels[c] + reader.Samples(blender.LastCell() + 1));
    }
}

// Reads and blends the cells of a group of rows. To the right of the last one stands a pixel, not a mean: the first one
// of the last cell. In a group of one row that is the cell itself.
void BlendLower(Blender& blender, const PixelGroup& rows) {
    CellReader& reader = blender.reader;
    const bool isHeld = rows.first == std::exchange(blender.heldRow, -1) && rows.count == 1;
    if (isHeld) {
        std::swap(blender.lower, blender.upper);
        std::swap(blender.blendedLower, blender.blendedUpper);
        SetBehindLast(blender, blender.lower, blender.lower);
    } else if (rows.count == 1) {
        ReadCells(reader, rows, blender.lower);
        SetBehindLast(blender, blender.lower, blender.lower);
    } else {
        ReadFirstPixels(reader, rows.first, blender.upper);
        SetBehindLast(blender, blender.lower, blender.upper);
        ReadCells(reader, rows, blender.lower);
    }
    BlendColumns(blender, isHeld ? blender.columnsBefore : 0, blender.lower, blender.blendedLower);
}

// Reads and blends the cells above `rows`. To the right of the last one stands the last cell of `rows`. Where there are
// no rows above, the first pixel of each cell of `rows` stands in for the cell above it and for that one's neighbour.
void BlendUpper(Blender& blender, const PixelGroup& rows) {
    CellReader& reader = blender.reader;
    if (rows.next < reader.task.rows.oldSize) {
        ReadCells(reader, {rows.next, 1, 0, 0, 0}, blender.upper);
        blender.heldRow = rows.next;
        SetBehindLast(blender, blender.upper, blender.lower);
        BlendColumns(blender, 0, blender.upper, blender.blendedUpper);
        return;
    }
    ReadFirstPixels(reader, rows.first, blender.upper);
    for (int c = 0; c != reader.channels; ++c) {
        float* blended = blender.blendedUpper.channels[c];
        for (int i = 0; i != blender.columns; ++i) {
            const float* const pixel = blender.upper.channels[c] + reader.Samples(blender.cell[i]);
            for (int k = 0; k != reader.step; ++k) {
                *blended++ = pixel[k] * blender.right[i] + pixel[k] * blender.left[i];
            }
        }
    }
}

// Writes decoded channels to a row of the result.
void WriteLine(const Blender& blender, BYTE* const (&line)[kMaxChannels], int row) {
    const CellReader& reader = blender.reader;
    BYTE* const result = reader.task.result->Row(row);
    if (reader.IsPacked()) {
        std::memcpy(result, line[0], reader.Samples(blender.columns));
    } else {
        ClearBeforeEncoding(reader.format, result, blender.columns);
        reader.format.Encode({line[0], line[1], line[2]}, result, blender.columns);
    }
}

void WriteBlended(const Blender& blender, const CellRow& upper, float upperWeight, int row) {
    const CellReader& reader = blender.reader;
    const auto samples = static_cast<int>(reader.Samples(blender.columns));
    for (int c = 0; c != reader.channels; ++c) {
        BYTE* const line = reader.IsPacked() ? reader.task.result->Row(row) : blender.resultLine[c];
        reader.kernels.blendRows(upper.channels[c], blender.blendedLower.channels[c], upperWeight, line, samples);
    }
    if (!reader.IsPacked()) {
        WriteLine(blender, blender.resultLine, row);
    }
}

void WriteBand(Blender& blender, const PixelGroup& rows) {
    const ResizeTask& task = blender.reader.task;
    if (rows.resultCount == 0) {
        return;
    }
    if (blender.reader.sumsFit && !task.columns.Enlarges() && !task.rows.Enlarges()) {
        ReadMeans(blender.reader, rows);
        WriteLine(blender, blender.reader.means, rows.resultFirst);
        ClearBehind(task.result->view, blender.columns, task.result->Row(rows.resultFirst));
        return;
    }
    BlendLower(blender, rows);
    const bool usesUpper = rows.resultCount > 1;
    if (usesUpper) {
        BlendUpper(blender, rows);
    }
    const float step = 1.0F / static_cast<float>(rows.resultCount);
    for (int i = 0; i != rows.resultCount; ++i) {
        WriteBlended(blender, usesUpper ? blender.blendedUpper : blender.blendedLower, step * static_cast<float>(i),
                     rows.resultFirst + i);
        ClearBehind(task.result->view, blender.columns, task.result->Row(rows.resultFirst + i));
    }
}

} // namespace

bool ResizeSmoothly(const ResizeTask& task, const Progress& progress) {
    Blender blender{.reader = {.task = task}};
    if (!MakeBlender(blender)) {
        return false;
    }
    return ForEachBand(task, progress, [&](const PixelGroup& rows) { WriteBand(blender, rows); });
}

} // namespace qv8
