#include "convert/popularity.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "frame/rows.h"

namespace qv8 {
namespace {

constexpr int kCellCount = 64; // 2 bits a channel

struct Cell {
    RGBQUAD colour;
    std::uint32_t count;
};

// Children of cell i are 2i and 2i + 1, with cell 0 a child of itself: that fixes the order of equal counts.
void Sift(Cell* cells, int i, int end) {
    for (int child = 2 * i; child <= end; child = 2 * i) {
        if (child < end && cells[child + 1].count < cells[child].count) {
            ++child;
        }
        if (cells[i].count <= cells[child].count) {
            return;
        }
        std::swap(cells[i], cells[child]);
        i = child;
    }
}

// Sorts by count, largest first.
void SortCells(Cell* cells) {
    for (int i = kCellCount / 2 - 1; i >= 0; --i) {
        Sift(cells, i, kCellCount - 1);
    }
    for (int end = kCellCount - 1; end >= 1; --end) {
        std::swap(cells[0], cells[end]);
        Sift(cells, 0, end - 1);
    }
}

} // namespace

bool PickPopular(const ColourReader& reader, const PlanarRow& rowBuffer, RGBQUAD* palette, const Progress& progress) {
    Cell cells[kCellCount] = {};
    const int width = reader.picture.width;
    const bool done = ForEachRow(reader.picture.height, progress.Slice(0, 10), [&](int row) {
        ReadColours(reader, row, 0, width, rowBuffer);
        for (int i = 0; i != width; ++i) {
            const RGBQUAD colour = {rowBuffer.blue[i], rowBuffer.green[i], rowBuffer.red[i], 0};
            Cell& cell = cells[(colour.rgbBlue >> 6) + 4 * (colour.rgbGreen >> 6) + 16 * (colour.rgbRed >> 6)];
            cell.colour = colour;
            ++cell.count;
        }
    });
    if (done) {
        SortCells(cells);
        std::transform(cells, cells + 16, palette, [](const Cell& cell) { return cell.colour; });
    }
    return done;
}

} // namespace qv8
