#include "convert/histogram.h"

namespace qv8 {
namespace {

struct CellTable {
    int of[256];
    CellTable() {
        for (unsigned i = 0; i != 256; ++i) {
            of[i] = static_cast<int>(Narrow6(i));
        }
    }
};

// The accumulated count up to and including the given levels; -1 is before the first.
std::uint32_t UpTo(const std::uint32_t* sums, int blue, int green, int red) {
    return blue < 0 || green < 0 || red < 0 ? 0 : sums[CellIndex(blue, green, red)];
}

} // namespace

Histogram CountColours(const ColourReader& reader, const PlanarRow& rowBuffer, const Progress& progress) {
    Histogram histogram = {AllocateWorkingBlock(kCells * sizeof(std::uint32_t))};
    if (!histogram.block) {
        return {};
    }
    const CellTable cells;
    std::uint32_t* const counts = histogram.Counts();
    const int width = reader.picture.width;
    const bool done = ForEachRow(reader.picture.height, progress, [&](int row) {
        ReadColours(reader, row, 0, width, rowBuffer);
        for (int i = 0; i != width; ++i) {
            ++counts[CellIndex(cells.of[rowBuffer.blue[i]], cells.of[rowBuffer.green[i]], cells.of[rowBuffer.red[i]])];
        }
    });
    return done ? std::move(histogram) : Histogram{};
}

void AccumulateHistogram(const Histogram& histogram) {
    std::uint32_t* const sums = histogram.Counts();
    for (const int step : {CellIndex(0, 0, 1), CellIndex(0, 1, 0), CellIndex(1, 0, 0)}) {
        const int length = step * kCellLevels; // of this axis, in cells
        for (int first = 0; first != kCells; first += length) {
            for (int i = first + step; i != first + length; ++i) {
                sums[i] += sums[i - step];
            }
        }
    }
}

std::uint32_t CountOf(const Histogram& histogram, const CellBox& box) {
    const std::uint32_t* const sums = histogram.Counts();
    const int blue = box.low[0] - 1;
    const int green = box.low[1] - 1;
    const int red = box.low[2] - 1;
    const auto slab = [&](int toBlue) {
        return UpTo(sums, toBlue, box.high[1], box.high[2]) - UpTo(sums, toBlue, green, box.high[2]) -
               UpTo(sums, toBlue, box.high[1], red) + UpTo(sums, toBlue, green, red);
    };
    return slab(box.high[0]) - slab(blue);
}

} // namespace qv8
