#include "geometry/resize_smooth.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "frame/block_parts.h"
#include "frame/grey_ramp.h"
#include "frame/pixel_kernels.h"
#include "geometry/resize_kernels.h"
#include "qv8com.h"

namespace qv8 {
namespace {

// A source row as it enters the blending: a cell for each group of columns, and one behind the last as its neighbour.
using Cells = float*;

constexpr int kMaxChannels = 3;

// Rows whose sums of bytes are certain to fit 32 bits.
constexpr int kRowsPerSum = 1 << 23;

// Beyond lines, for loops that take four samples at once.
constexpr int kSlack = 4;

struct Blender {
    const ResizeTask& task;
    const ResizeKernels& kernels = TheResizeKernels();
    PixelFormat format = {};
    GreyRamp grey = {};
    int channels = 1;
    int step = 1; // from a sample of a line to the next of its channel: 24-bit pixels stay as they are for means
    bool onlyMeans = false; // both sides shrink, and sums of groups are certain to fit 31 bits
    int cellCount = 0;
    WorkingBlock block = {};

    // All in the block. Lines of the source, of cells, and of the result.
    int* groupFirst = nullptr;
    int* groupCount = nullptr;
    int* cell = nullptr; // of new columns
    float* right = nullptr;
    float* left = nullptr;
    BYTE* line[kMaxChannels] = {};
    std::uint32_t* sums[kMaxChannels] = {};
    double* cellSums[kMaxChannels] = {};
    Cells lower[kMaxChannels] = {};
    Cells upper[kMaxChannels] = {};
    float* blendedLower[kMaxChannels] = {};
    float* blendedUpper[kMaxChannels] = {};
    BYTE* resultLine[kMaxChannels] = {};

    bool IsGrey() const {
        return task.source->bitCount == 8;
    }
    ColumnWeights WeightsFrom(int column) const {
        return {cell + column, right + column, left + column};
    }
};

void LayOut(Blender& blender, BlockParts& parts) {
    const auto oldWidth = static_cast<std::uint64_t>(blender.task.columns.oldSize);
    const auto newWidth = static_cast<std::uint64_t>(blender.task.columns.newSize);
    const auto step = static_cast<std::uint64_t>(blender.step);
    const auto cells = static_cast<std::uint64_t>(blender.cellCount);
    parts.Take(blender.groupFirst, cells);
    parts.Take(blender.groupCount, cells);
    parts.Take(blender.cell, newWidth);
    parts.Take(blender.right, newWidth);
    parts.Take(blender.left, newWidth);
    for (int c = 0; c != blender.channels; ++c) {
        parts.Take(blender.line[c], oldWidth);
        parts.Take(blender.sums[c], oldWidth * step + kSlack);
        parts.Take(blender.cellSums[c], cells);
        parts.Take(blender.lower[c], cells + 1);
        parts.Take(blender.upper[c], cells + 1);
        parts.Take(blender.blendedLower[c], newWidth);
        parts.Take(blender.blendedUpper[c], newWidth);
        parts.Take(blender.resultLine[c], newWidth * step + kSlack);
    }
}

void DescribeColumns(Blender& blender) {
    int index = 0;
    ForEachGroup(blender.task.columns, [&](const PixelGroup& group) {
        blender.groupFirst[index] = group.first;
        blender.groupCount[index] = group.count;
        const float step = 1.0F / static_cast<float>(std::max(group.resultCount, 1));
        for (int i = 0; i != group.resultCount; ++i) {
            const int column = group.resultFirst + i;
            blender.cell[column] = index;
            blender.right[column] = step * static_cast<float>(i);
            blender.left[column] = 1.0F - blender.right[column];
        }
        ++index;
    });
}

// No group is larger than that.
std::int64_t LargestGroup(const ScaledSide& side) {
    return static_cast<std::int64_t>(1.0 / static_cast<double>(side.factor)) + 2;
}

bool HasOnlyMeans(const ResizeTask& task) {
    constexpr std::int64_t kMaxPixels = 0x7FFFFFFF / 255;
    const bool shrinks = !task.columns.Enlarges() && !task.rows.Enlarges();
    return shrinks && LargestGroup(task.columns) <= kMaxPixels / LargestGroup(task.rows);
}

bool Prepare(Blender& blender) {
    const DibView& source = *blender.task.source;
    blender.onlyMeans = HasOnlyMeans(blender.task);
    if (blender.IsGrey()) {
        blender.grey = GreyRampOf(source);
    } else if (blender.onlyMeans && source.bitCount == 24) {
        blender.step = 3;
    } else {
        blender.channels = kMaxChannels;
        blender.format = PixelFormatOf(source.bitCount, source.masks);
    }
    ForEachGroup(blender.task.columns, [&](const PixelGroup&) { ++blender.cellCount; });
    blender.block = AllocateParts([&](BlockParts& parts) { LayOut(blender, parts); });
    if (!blender.block) {
        SetErrorStatus(QV8_STATUS_MEMORY);
        return false;
    }
    DescribeColumns(blender);
    return true;
}

void ReadLine(const Blender& blender, int row) {
    const DibView& source = *blender.task.source;
    if (blender.IsGrey()) {
        std::transform(source.Row(row), source.Row(row) + source.width, blender.line[0],
                       [&](BYTE index) { return blender.grey.levels[index]; });
    } else {
        blender.format.decode(blender.format.masks, source.Row(row),
                              {blender.line[0], blender.line[1], blender.line[2]}, source.width);
    }
}

void WriteLine(const Blender& blender, int row) {
    BYTE* const result = blender.task.result->Row(row);
    const int count = blender.task.map.count;
    if (blender.IsGrey()) {
        std::transform(blender.resultLine[0], blender.resultLine[0] + count, result,
                       [&](BYTE level) { return blender.grey.indices[level]; });
    } else {
        blender.format.encode(blender.format.masks,
                              {blender.resultLine[0], blender.resultLine[1], blender.resultLine[2]}, result, count);
    }
}

// Adds sums of columns to those of cells and begins them anew.
void Gather(const Blender& blender) {
    for (int c = 0; c != blender.channels; ++c) {
        for (int i = 0; i != blender.cellCount; ++i) {
            std::uint32_t* const first = blender.sums[c] + blender.groupFirst[i];
            double total = 0; // exact far beyond any picture
            for (int k = 0; k != blender.groupCount[i]; ++k) {
                total += first[k];
                first[k] = 0;
            }
            blender.cellSums[c][i] += total;
        }
    }
}

// The means of the groups in `rows` rows.
void ReadMeans(const Blender& blender, int firstRow, int rows, const Cells* cells) {
    for (int i = 0; i != rows; ++i) {
        ReadLine(blender, firstRow + i);
        for (int c = 0; c != blender.channels; ++c) {
            blender.kernels.addRow(blender.line[c], blender.sums[c], blender.task.columns.oldSize);
        }
        if ((i + 1) % kRowsPerSum == 0) {
            Gather(blender);
        }
    }
    Gather(blender);
    for (int c = 0; c != blender.channels; ++c) {
        blender.kernels.average(blender.cellSums[c], blender.groupCount, rows, cells[c], blender.cellCount);
        std::fill_n(blender.cellSums[c], blender.cellCount, 0.0);
    }
}

// The first pixels of the groups in one row, as they are.
void ReadFirstPixels(const Blender& blender, int row, const Cells* cells) {
    ReadLine(blender, row);
    for (int c = 0; c != blender.channels; ++c) {
        if (blender.task.columns.Enlarges()) {
            blender.kernels.toFloats(blender.line[c], cells[c], blender.cellCount);
            continue;
        }
        for (int i = 0; i != blender.cellCount; ++i) {
            cells[c][i] = blender.line[c][blender.groupFirst[i]];
        }
    }
}

void ReadCells(const Blender& blender, const PixelGroup& rows, const Cells* cells) {
    if (rows.count == 1 && blender.task.columns.Enlarges()) {
        ReadFirstPixels(blender, rows.first, cells);
    } else {
        ReadMeans(blender, rows.first, rows.count, cells);
    }
}

// Reads the lower cells of a group of rows. The last cell's right neighbour is its own pixel in the first row, not a
// mean.
void ReadLower(const Blender& blender, const PixelGroup& rows) {
    ReadCells(blender, rows, blender.lower);
    const int last = blender.cellCount - 1;
    if (rows.count > 1) {
        ReadLine(blender, rows.first);
    }
    for (int c = 0; c != blender.channels; ++c) {
        blender.lower[c][last + 1] =
            rows.count > 1 ? static_cast<float>(blender.line[c][blender.groupFirst[last]]) : blender.lower[c][last];
    }
}

void BlendLower(const Blender& blender) {
    for (int c = 0; c != blender.channels; ++c) {
        blender.kernels.blendColumns(blender.lower[c], blender.WeightsFrom(0), blender.blendedLower[c],
                                     blender.task.map.count);
    }
}

// Reads and blends the row above `rows`. Both edges fall back to the pixel itself in the corner between the row and
// the column behind: in the last column of every row, and all along the last row.
void BlendUpper(const Blender& blender, const PixelGroup& rows) {
    const int last = blender.cellCount - 1;
    const int count = blender.task.map.count;
    if (rows.next < blender.task.rows.oldSize) {
        ReadCells(blender, {rows.next, 1, 0, 0, 0}, blender.upper);
        for (int c = 0; c != blender.channels; ++c) {
            blender.upper[c][last + 1] = blender.lower[c][last];
            blender.kernels.blendColumns(blender.upper[c], blender.WeightsFrom(0), blender.blendedUpper[c], count);
        }
        return;
    }
    ReadFirstPixels(blender, rows.first, blender.upper);
    for (int c = 0; c != blender.channels; ++c) {
        const float* const cells = blender.upper[c];
        for (int i = 0; i != count; ++i) {
            const float pixel = cells[blender.cell[i]];
            blender.blendedUpper[c][i] = pixel * blender.right[i] + pixel * blender.left[i];
        }
    }
}

// The pixels of a row, as `step` says.
const BYTE* LineOf(const Blender& blender, int row, int channel) {
    return blender.step == 1 ? blender.line[channel] : blender.task.source->Row(row);
}

// Every new pixel is the mean of its group.
void WriteMeans(const Blender& blender, const PixelGroup& rows) {
    const ResizeKernels& kernels = blender.kernels;
    const PixelGroups groups = {blender.groupFirst, blender.groupCount, blender.task.map.count};
    for (int row = rows.first; row != rows.next; ++row) {
        if (blender.step == 1) {
            ReadLine(blender, row);
        }
        for (int c = 0; c != blender.channels; ++c) {
            (row == rows.first ? kernels.widenRow : kernels.addRow)(LineOf(blender, row, c), blender.sums[c],
                                                                    blender.task.columns.oldSize * blender.step);
        }
    }
    for (int c = 0; c != blender.channels; ++c) {
        (blender.step == 1 ? kernels.averageGroups : kernels.averageTriples)(blender.sums[c], groups, rows.count,
                                                                             blender.resultLine[c]);
    }
    if (blender.step == 1) {
        WriteLine(blender, rows.resultFirst);
    } else {
        std::memcpy(blender.task.result->Row(rows.resultFirst), blender.resultLine[0],
                    static_cast<std::size_t>(groups.count) * 3);
    }
}

void BlendBand(const Blender& blender, const PixelGroup& rows) {
    if (rows.resultCount == 0) {
        return;
    }
    if (blender.onlyMeans) {
        WriteMeans(blender, rows);
        return;
    }
    ReadLower(blender, rows);
    BlendLower(blender);
    const bool usesUpper = rows.resultCount > 1;
    if (usesUpper) {
        BlendUpper(blender, rows);
    }
    const float step = 1.0F / static_cast<float>(rows.resultCount);
    for (int i = 0; i != rows.resultCount; ++i) {
        for (int c = 0; c != blender.channels; ++c) {
            const float* const upper = usesUpper ? blender.blendedUpper[c] : blender.blendedLower[c];
            blender.kernels.blendRows(upper, blender.blendedLower[c], step * static_cast<float>(i),
                                      blender.resultLine[c], blender.task.map.count);
        }
        WriteLine(blender, rows.resultFirst + i);
    }
}

} // namespace

bool ResizeSmoothly(const ResizeTask& task, const Progress& progress) {
    Blender blender{.task = task};
    if (!Prepare(blender)) {
        return false;
    }
    return ForEachBand(task, progress, [&](const PixelGroup& rows) { BlendBand(blender, rows); });
}

} // namespace qv8
