#include "geometry/quarter_turn.h"

#include <cstring>

#include "frame/parts.h"
#include "frame/rows.h"
#include "pixels/pixel_kernels.h"

namespace qv8 {
namespace {

constexpr int kTile = 64; // pixels; columns become rows tile by tile, so that lines of memory are used up while at hand

// A coordinate of the source goes forth or back with one of the result: base + step * value.
struct Course {
    int base;
    int step;

    int At(int value) const {
        return base + step * value;
    }
    Course Backwards(int size) const {
        return {size - 1 - base, -step};
    }
    bool IsInside(int value, int size) const {
        return At(value) >= 0 && At(value) < size;
    }
    // The values from `begin` to before `end` lie inside.
    int Begin(int size) const {
        return step > 0 ? -base : base - (size - 1);
    }
    int End(int size) const {
        return Begin(size) + size;
    }
};

struct Move {
    bool sideways; // the source's columns go with the result's rows
    Course column;
    Course row;
};

Move MoveOf(int quarters, int width, int height, const RotationOptions& options) {
    const int offsetA = options.keepSize ? (height - width) / 2 : 0;
    const int offsetB = options.keepSize ? (height - width) - offsetA : 0;
    Move move = {IsSideways(quarters), {0, 1}, {0, 1}};
    switch (quarters) {
    case 0:
        break;
    case 1:
        move.column = {-offsetB, 1};
        move.row = {height - 1 - offsetA, -1};
        break;
    case 2:
        move.column = move.column.Backwards(width);
        move.row = move.row.Backwards(height);
        break;
    default:
        move.column = {width - 1 + offsetA, -1};
        move.row = {offsetB, 1};
        break;
    }
    move.column = options.mirror ? move.column.Backwards(width) : move.column;
    move.row = options.flip ? move.row.Backwards(height) : move.row;
    return move;
}

void WriteMoved(const TurnedPicture& picture, const Move& move, int row, int start, int count) {
    const DibView& source = picture.source;
    const auto [along, alongSize] =
        move.sideways ? std::pair{move.row, source.height} : std::pair{move.column, source.width};
    const bool isEmpty =
        move.sideways ? !move.column.IsInside(row, source.width) : !move.row.IsInside(row, source.height);
    const int begin = isEmpty ? 0 : std::max(along.Begin(alongSize), start);
    const int end = isEmpty ? 0 : along.End(alongSize);
    WritePart(picture, row, start, count, begin, end, [&](int pixels, BYTE* result) {
        if (move.sideways) {
            picture.unit.copyLine(source, move.column.At(row), move.row.At(begin), 0, move.row.step, pixels, result);
        } else {
            picture.unit.copyLine(source, move.column.At(begin), move.row.At(row), move.column.step, 0, pixels, result);
        }
    });
}

// Rows row .. row + 3 at once, from 24-bit pixels that all lie in the source. False where these are none.
bool WriteFourMoved(const TurnedPicture& picture, const Move& move, int row, int start, int count) {
    const DibView& source = picture.source;
    const int column = std::min(move.column.At(row), move.column.At(row + 3));
    constexpr int kReadBeyond = 2; // pixels
    if (!move.sideways || source.bitCount != 24 || column < 0 || column + 4 + kReadBeyond > source.width ||
        start < move.row.Begin(source.height) || start + count > move.row.End(source.height)) {
        return false;
    }
    const auto stride = static_cast<std::ptrdiff_t>(source.stride);
    const auto resultStride = static_cast<std::ptrdiff_t>(picture.result.view.stride);
    const bool isBackwards = move.column.step < 0; // the lowest column is the last row then
    BYTE* const result = picture.result.Row(isBackwards ? row + 3 : row) + std::ptrdiff_t{start} * 3;
    ThePixelKernels().turnFour24(source.Row(move.row.At(start)) + std::ptrdiff_t{column} * 3, move.row.step * stride,
                                 result, isBackwards ? -resultStride : resultStride, count);
    return true;
}

// Whether rows of the result are rows of the source, byte for byte.
bool CopiesRows(const TurnedPicture& picture, const Move& move) {
    const DibView& source = picture.source;
    return !move.sideways && move.column.base == 0 && move.column.step == 1 && !source.layout->SharesBytes() &&
           source.layout->unusedBytes == 0 && source.width == picture.result.view.width &&
           source.height == picture.result.view.height;
}

// Rows firstRow .. firstRow + rowCount of one picture.
void WriteRows(const TurnedPicture& picture, const Move& move, int firstRow, int rowCount) {
    const int width = picture.result.view.width;
    if (CopiesRows(picture, move)) {
        const auto bytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(picture.source.layout->Bytes());
        for (int row = firstRow; row < firstRow + rowCount; ++row) {
            std::memcpy(picture.result.Row(row), picture.source.Row(move.row.At(row)), bytes);
            ClearPadding(picture.result.view, picture.result.Row(row));
        }
        return;
    }
    // Tiles keep to few rows of the source; whole rows are copied at once where pixels need not be packed.
    const int part = move.sideways ? kTile : picture.result.view.layout->SharesBytes() ? kPartPixels : width;
    ForEachPart(width, part, [&](int start, int count) {
        for (int row = firstRow; row < firstRow + rowCount;) {
            if (row + 4 <= firstRow + rowCount && WriteFourMoved(picture, move, row, start, count)) {
                row += 4;
            } else {
                WriteMoved(picture, move, row++, start, count);
            }
        }
    });
    for (int row = firstRow; row < firstRow + rowCount; ++row) {
        ClearPadding(picture.result.view, picture.result.Row(row));
    }
}

} // namespace

bool TurnQuarters(TurnedPicture& image, TurnedPicture* mask, int quarters, const RotationOptions& options,
                  const Progress& progress) {
    const Move move = MoveOf(quarters, image.source.width, image.source.height, options);
    const int height = image.result.view.height;
    const auto write = [&](int row) {
        if (row % kTile == 0) {
            const int rowCount = std::min(kTile, height - row);
            WriteRows(image, move, row, rowCount);
            if (mask != nullptr) {
                WriteRows(*mask, move, row, rowCount);
            }
        }
    };
    return progress.RunWithoutFloats([&] { return ForEachRow(height, progress, write); });
}

} // namespace qv8
