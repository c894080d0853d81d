#include "geometry/resize_cells.h"

#include <algorithm>

#include "frame/block_parts.h"
#include "qv8com.h"
#include "simd/fixed_reciprocal.h"

namespace qv8 {
namespace {

// Rows whose sums of bytes are certain to fit 32 bits.
constexpr int kRowsPerSum = 1 << 23;

// No group is larger than that.
std::int64_t LargestGroup(const ScaledSide& side) {
    return static_cast<std::int64_t>(1.0 / static_cast<double>(side.factor)) + 2;
}

bool SumsFit(const ResizeTask& task) {
    constexpr std::int64_t kMaxPixels = 0x7FFFFFFF / 255;
    return LargestGroup(task.columns) <= kMaxPixels / LargestGroup(task.rows);
}

void LayOut(CellReader& reader, BlockParts& parts) {
    const auto width = static_cast<std::uint64_t>(reader.task.columns.oldSize);
    const auto step = static_cast<std::uint64_t>(reader.step);
    const auto cells = static_cast<std::uint64_t>(reader.cellCount);
    parts.Take(reader.groupFirst, cells);
    parts.Take(reader.groupCount, cells);
    for (int c = 0; c != reader.channels; ++c) {
        parts.Take(reader.sums[c], width * step + kSlack);
        parts.Take(reader.smallSums[c], width * step + kSlack);
        parts.Take(reader.means[c], cells * step + kMeansBeyond);
        if (!reader.IsPacked()) {
            parts.Take(reader.decoded[c], width);
        }
        if (!reader.sumsFit) {
            parts.Take(reader.cellSums[c], cells);
        }
    }
}

// Sums of columns over some rows, made anew.
void SumRows(CellReader& reader, const PixelGroup& rows) {
    const auto samples = static_cast<int>(reader.Samples(reader.task.columns.oldSize));
    for (int row = rows.first; row != rows.first + rows.count; ++row) {
        ReadLine(reader, row);
        const auto add = row == rows.first ? reader.kernels.widenRow : reader.kernels.addRow;
        for (int c = 0; c != reader.channels; ++c) {
            add(reader.line[c], reader.sums[c], samples);
        }
    }
}

// Whether means of groups of so many rows can be formed from 16-bit sums; says how.
bool PrepareFixedMeans(CellReader& reader, int rows) {
    if (reader.mostColumns > kMaxSmallColumns || rows > kMaxSmallColumns) {
        return false;
    }
    for (int columns = reader.fewestColumns; columns <= reader.mostColumns; ++columns) {
        const int pixels = columns * rows;
        if (pixels == 1) { // (v + 1) * 65535 / 65536 is v again
            reader.fixedMeans[columns] = {1, 0xFFFF, 0};
            continue;
        }
        const FixedReciprocal reciprocal = MakeFixedReciprocal(pixels, 255 * pixels + pixels / 2);
        if (!reciprocal.exact) {
            return false;
        }
        reader.fixedMeans[columns] = {static_cast<WORD>(pixels / 2), static_cast<WORD>(reciprocal.factor),
                                      static_cast<WORD>(reciprocal.shift)};
    }
    return true;
}

void SumSmallRows(CellReader& reader, const PixelGroup& rows) {
    const std::size_t samples = reader.Samples(reader.task.columns.oldSize);
    for (int c = 0; c != reader.channels; ++c) {
        std::fill_n(reader.smallSums[c], samples, WORD{0});
    }
    for (int row = rows.first; row != rows.first + rows.count; ++row) {
        ReadLine(reader, row);
        for (int c = 0; c != reader.channels; ++c) {
            reader.kernels.addSmallRow(reader.line[c], reader.smallSums[c], static_cast<int>(samples));
        }
    }
}

// Adds sums of columns to those of cells.
void Gather(const CellReader& reader) {
    for (int c = 0; c != reader.channels; ++c) {
        for (int i = 0; i != reader.cellCount; ++i) {
            const std::uint32_t* const first = reader.sums[c] + reader.groupFirst[i];
            double total = 0; // exact far beyond any picture
            for (int k = 0; k != reader.groupCount[i]; ++k) {
                total += first[k];
            }
            reader.cellSums[c][i] += total;
        }
    }
}

void ReadLargeMeans(CellReader& reader, const PixelGroup& rows, const CellRow& cells) {
    for (int done = 0; done < rows.count; done += kRowsPerSum) {
        SumRows(reader, {rows.first + done, std::min(rows.count - done, kRowsPerSum), 0, 0, 0});
        Gather(reader);
    }
    for (int c = 0; c != reader.channels; ++c) {
        reader.kernels.average(reader.cellSums[c], reader.groupCount, rows.count, cells.channels[c], reader.cellCount);
        std::fill_n(reader.cellSums[c], reader.cellCount, 0.0);
    }
}

// Finds the longest run of cells of two columns each: nearly all of them at half the size.
void FindPairs(CellReader& reader) {
    for (int begin = 0, end = 0; begin != reader.cellCount; begin = std::max(end, begin + 1)) {
        end = begin;
        while (end != reader.cellCount && reader.groupCount[end] == 2) {
            ++end;
        }
        if (end - begin > reader.pairs.Count()) {
            reader.pairs = {begin, end};
        }
    }
}

// Means of cells from two rows of packed pixels, one by one.
void AverageFewPairs(const CellReader& reader, const BYTE* lower, const BYTE* upper, int begin, int end) {
    for (int i = begin; i < end; ++i) {
        const int pixels = 2 * reader.groupCount[i];
        for (std::size_t k = 0; k != 3; ++k) {
            int sum = pixels / 2;
            for (int column = reader.groupFirst[i]; column != reader.groupFirst[i] + reader.groupCount[i]; ++column) {
                sum += lower[reader.Samples(column) + k] + upper[reader.Samples(column) + k];
            }
            reader.means[0][reader.Samples(i) + k] = static_cast<BYTE>(sum / pixels);
        }
    }
}

// Means of groups of two rows where most groups of columns are of two. False where they are not.
bool ReadMeansOfFour(CellReader& reader, const PixelGroup& rows) {
    constexpr int kWorthIt = 8;
    const int pairs = reader.pairs.Count();
    if (!reader.IsPacked() || rows.count != 2 || pairs < kWorthIt || reader.cellCount - pairs > pairs) {
        return false;
    }
    const BYTE* const lower = reader.task.source->Row(rows.first);
    const BYTE* const upper = reader.task.source->Row(rows.first + 1);
    const std::size_t first = reader.Samples(reader.groupFirst[reader.pairs.begin]);
    AverageFewPairs(reader, lower, upper, 0, reader.pairs.begin);
    reader.kernels.averageFourTriples(lower + first, upper + first, pairs,
                                      reader.means[0] + reader.Samples(reader.pairs.begin));
    AverageFewPairs(reader, lower, upper, reader.pairs.end, reader.cellCount);
    return true;
}

} // namespace

bool MakeCellReader(CellReader& reader) {
    const DibView& source = *reader.task.source;
    reader.sumsFit = SumsFit(reader.task);
    reader.format = PixelFormatOf(source);
    if (source.layout->IsNothingButBgr() && reader.sumsFit) {
        reader.step = reader.format.bytesPerPixel;
    } else {
        reader.channels = reader.format.channels;
    }
    reader.fewestColumns = source.width;
    ForEachGroup(reader.task.columns, [&](const PixelGroup& group) {
        ++reader.cellCount;
        reader.fewestColumns = std::min(reader.fewestColumns, group.count);
        reader.mostColumns = std::max(reader.mostColumns, group.count);
    });
    reader.block = AllocateParts([&](BlockParts& parts) { LayOut(reader, parts); });
    if (!reader.block) {
        return false;
    }
    int index = 0;
    ForEachGroup(reader.task.columns, [&](const PixelGroup& group) {
        reader.groupFirst[index] = group.first;
        reader.groupCount[index++] = group.count;
    });
    FindPairs(reader);
    return true;
}

void ReadLine(CellReader& reader, int row) {
    const DibView& source = *reader.task.source;
    const BYTE* const pixels = source.Row(row);
    if (reader.IsPacked()) {
        reader.line[0] = pixels;
        return;
    }
    reader.format.Decode(pixels, {reader.decoded[0], reader.decoded[1], reader.decoded[2]}, source.width);
    std::copy_n(reader.decoded, kMaxChannels, reader.line);
}

void ReadMeans(CellReader& reader, const PixelGroup& rows) {
    if (ReadMeansOfFour(reader, rows)) {
        return;
    }
    const PixelGroups groups = {reader.groupFirst, reader.groupCount, reader.cellCount, reader.mostColumns};
    if (PrepareFixedMeans(reader, rows.count)) {
        SumSmallRows(reader, rows);
        const auto averageSmall =
            reader.IsPacked() ? reader.kernels.averageSmallTriples : reader.kernels.averageSmallGroups;
        for (int c = 0; c != reader.channels; ++c) {
            averageSmall(reader.smallSums[c], groups, reader.fixedMeans, reader.means[c]);
        }
        return;
    }
    SumRows(reader, rows);
    const auto average = reader.IsPacked() ? reader.kernels.averageTriples : reader.kernels.averageGroups;
    for (int c = 0; c != reader.channels; ++c) {
        average(reader.sums[c], groups, rows.count, reader.means[c]);
    }
}

void ReadFirstPixels(CellReader& reader, int row, const CellRow& cells) {
    ReadLine(reader, row);
    for (int c = 0; c != reader.channels; ++c) {
        if (reader.task.columns.Enlarges()) {
            reader.kernels.toFloats(reader.line[c], cells.channels[c],
                                    static_cast<int>(reader.Samples(reader.cellCount)));
            continue;
        }
        for (int i = 0; i != reader.cellCount; ++i) {
            const BYTE* const pixel = reader.line[c] + reader.Samples(reader.groupFirst[i]);
            std::copy_n(pixel, reader.step, cells.channels[c] + reader.Samples(i));
        }
    }
}

void ReadCells(CellReader& reader, const PixelGroup& rows, const CellRow& cells) {
    if (rows.count == 1 && reader.task.columns.Enlarges()) {
        ReadFirstPixels(reader, rows.first, cells);
    } else if (reader.sumsFit) {
        ReadMeans(reader, rows);
        for (int c = 0; c != reader.channels; ++c) {
            reader.kernels.toFloats(reader.means[c], cells.channels[c],
                                    static_cast<int>(reader.Samples(reader.cellCount)));
        }
    } else {
        ReadLargeMeans(reader, rows, cells);
    }
}

} // namespace qv8
