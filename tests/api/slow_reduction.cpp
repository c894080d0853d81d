#include "api/slow_reduction.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "qv8effect.h"

namespace test {
namespace {

using Counts = std::vector<std::uint32_t>; // of 64 x 64 x 64 cells

struct Box {
    std::array<int, 3> low{0, 0, 0}; // blue, green, red
    std::array<int, 3> high{63, 63, 63};
};

std::uint32_t CountBox(const Counts& counts, const Box& box) {
    std::uint32_t sum = 0;
    for (int b = box.low[0]; b <= box.high[0]; ++b) {
        for (int g = box.low[1]; g <= box.high[1]; ++g) {
            for (int r = box.low[2]; r <= box.high[2]; ++r) {
                sum += counts[static_cast<std::size_t>(b * 4096 + g * 64 + r)];
            }
        }
    }
    return sum;
}

std::uint32_t CountPlane(const Counts& counts, Box box, std::size_t axis, int plane) {
    box.low[axis] = box.high[axis] = plane;
    return CountBox(counts, box);
}

void ShrinkBox(const Counts& counts, Box& box) {
    if (CountBox(counts, box) == 0) {
        return;
    }
    for (std::size_t axis = 0; axis != 3; ++axis) {
        while (CountPlane(counts, box, axis, box.low[axis]) == 0) {
            ++box.low[axis];
        }
        while (CountPlane(counts, box, axis, box.high[axis]) == 0) {
            --box.high[axis];
        }
    }
}

int Median(const Counts& counts, const Box& box, std::size_t axis) {
    const std::uint32_t count = CountBox(counts, box);
    std::uint32_t running = 0;
    for (int plane = box.low[axis]; plane <= box.high[axis]; ++plane) {
        running += CountPlane(counts, box, axis, plane);
        if (running >= count / 2) {
            return plane;
        }
    }
    return box.high[axis];
}

std::size_t SplitAxis(const Box& box) {
    const int e0 = box.high[0] - box.low[0];
    const int e1 = box.high[1] - box.low[1];
    const int e2 = box.high[2] - box.low[2];
    if (e0 < e1) {
        return e1 < e2 ? 2 : 1;
    }
    return e0 < e2 ? 2 : 0;
}

void SplitBox(const Counts& counts, Box box, Box& low, Box& high) {
    ShrinkBox(counts, box);
    const std::size_t axis = SplitAxis(box);
    const int m = Median(counts, box, axis);
    low = high = box;
    low.high[axis] = m;
    high.low[axis] = m < box.high[axis] ? m + 1 : m;
    if (low.high[axis] > low.low[axis] && high.high[axis] == high.low[axis] && low.low[axis] < low.high[axis] - 1) {
        --high.low[axis];
        --low.high[axis];
    } else if (low.high[axis] == low.low[axis] && high.low[axis] < high.high[axis] - 1) {
        ++low.high[axis];
        ++high.low[axis];
    }
}

// The colour table and, for each cell, the box it lies in.
struct Cut {
    std::vector<Colour> table;
    std::vector<unsigned> boxOfCell = std::vector<unsigned>(64 * 64 * 64);
};

Cut MedianCut(const Picture& source, std::size_t boxCount) {
    Counts counts(64 * 64 * 64);
    for (int row = 0; row != source.Height(); ++row) {
        for (int x = 0; x != source.Width(); ++x) {
            const Colour c = source.ColourAt(x, row);
            ++counts[static_cast<std::size_t>(c.blue * 63 / 255 * 4096 + c.green * 63 / 255 * 64 + c.red * 63 / 255)];
        }
    }
    std::vector<Box> boxes(1);
    while (boxes.size() < boxCount) {
        std::vector<Box> children(boxes.size() * 2);
        for (std::size_t k = 0; k != boxes.size(); ++k) {
            SplitBox(counts, boxes[k], children[2 * k], children[2 * k + 1]);
        }
        boxes = children;
    }
    Cut cut;
    for (std::size_t i = 0; i != boxes.size(); ++i) {
        const Box& box = boxes[i];
        BYTE values[3];
        for (std::size_t axis = 0; axis != 3; ++axis) {
            const double h = box.high[axis];
            const double m = Median(counts, box, axis);
            values[axis] = box.high[axis] == 0 ? BYTE{0} : static_cast<BYTE>(((m / h) * h + 0.5) * 4.0);
        }
        cut.table.push_back({values[0], values[1], values[2]});
        for (int b = box.low[0]; b <= box.high[0]; ++b) {
            for (int g = box.low[1]; g <= box.high[1]; ++g) {
                for (int r = box.low[2]; r <= box.high[2]; ++r) {
                    cut.boxOfCell[static_cast<std::size_t>(b * 4096 + g * 64 + r)] = static_cast<unsigned>(i);
                }
            }
        }
    }
    return cut;
}

struct UsedCell {
    Colour colour{0, 0, 0};
    std::uint32_t count = 0;
};

void Sift(std::vector<UsedCell>& cells, std::size_t i, std::size_t end) {
    std::size_t j = 2 * i;
    while (j <= end) {
        if (j < end && cells[j + 1].count < cells[j].count) {
            j = j + 1;
        }
        if (cells[i].count <= cells[j].count) {
            break;
        }
        std::swap(cells[i], cells[j]);
        i = j;
        j = 2 * i;
    }
}

std::vector<Colour> PopularColours(const Picture& source) {
    std::vector<UsedCell> cells(64);
    for (int row = 0; row != source.Height(); ++row) {
        for (int x = 0; x != source.Width(); ++x) {
            const Colour c = source.ColourAt(x, row);
            UsedCell& cell = cells[static_cast<std::size_t>(c.blue / 64 + 4 * (c.green / 64) + 16 * (c.red / 64))];
            cell.colour = c;
            ++cell.count;
        }
    }
    for (std::size_t i = 32; i-- != 0;) {
        Sift(cells, i, 63);
    }
    for (std::size_t end = 63; end >= 1; --end) {
        std::swap(cells[0], cells[end]);
        Sift(cells, 0, end - 1);
    }
    std::vector<Colour> table;
    for (std::size_t i = 0; i != 16; ++i) {
        table.push_back(cells[i].colour);
    }
    return table;
}

std::vector<Colour> FixedTable(int depth) {
    std::vector<Colour> table;
    if (depth == 1) {
        return {{0, 0, 0}, {255, 255, 255}};
    }
    if (depth == 4) {
        static constexpr BYTE kRgb[16][3] = {{0, 0, 0},       {127, 0, 0},   {0, 127, 0},   {127, 127, 0},
                                             {0, 0, 127},     {127, 0, 127}, {0, 127, 127}, {127, 127, 127},
                                             {192, 192, 192}, {255, 0, 0},   {0, 255, 0},   {255, 255, 0},
                                             {0, 0, 255},     {255, 0, 255}, {0, 255, 255}, {255, 255, 255}};
        for (const auto& rgb : kRgb) {
            table.push_back({rgb[2], rgb[1], rgb[0]});
        }
        return table;
    }
    static constexpr BYTE kLevels[] = {0, 51, 102, 153, 204, 255};
    for (const BYTE blue : kLevels) {
        for (const BYTE green : kLevels) {
            for (const BYTE red : kLevels) {
                table.push_back({blue, green, red});
            }
        }
    }
    return table;
}

unsigned NearestOf16(const std::vector<Colour>& table, const Colour& c) {
    int best = 195075;
    unsigned index = 0;
    for (unsigned i = 0; i != 16; ++i) {
        const int b = c.blue - table[i].blue;
        const int g = c.green - table[i].green;
        const int r = c.red - table[i].red;
        if (b * b + g * g + r * r < best) {
            best = b * b + g * g + r * r;
            index = i;
        }
    }
    return index;
}

unsigned ChooseIndex(const ReductionCase& reduction, const Cut& cut, const Colour& c) {
    if (reduction.depth == 1) {
        return (c.blue + c.green + c.red) / 3 >= reduction.threshold ? 1 : 0;
    }
    if (reduction.depth == 4) {
        return NearestOf16(cut.table, c);
    }
    if (reduction.fixedPalette) {
        const auto level = [](BYTE value) { return static_cast<unsigned>(value * 5.0 / 255.0 + 0.5); };
        return 36 * level(c.blue) + 6 * level(c.green) + level(c.red);
    }
    return cut.boxOfCell[static_cast<std::size_t>(c.blue / 4 * 4096 + c.green / 4 * 64 + c.red / 4)];
}

using Errors = std::vector<std::array<int, 3>>; // from one pixel before the first to one behind the last

void MapRow(const Picture& source, const ReductionCase& reduction, const Cut& cut, int row, Errors& now, Errors& below,
            Picture& result) {
    const int step = row % 2 == 0 ? 1 : -1;
    for (int x = step > 0 ? 0 : source.Width() - 1; x >= 0 && x < source.Width(); x += step) {
        const auto at = static_cast<std::size_t>(x + 1);
        const auto ahead = static_cast<std::size_t>(x + 1 + step);
        const auto behind = static_cast<std::size_t>(x + 1 - step);
        const Colour colour = source.ColourAt(x, row);
        const auto with = [&](BYTE value, std::size_t c) {
            return static_cast<BYTE>(std::clamp(value + now[at][c], 0, 255));
        };
        const Colour v = {with(colour.blue, 0), with(colour.green, 1), with(colour.red, 2)};
        const unsigned index = ChooseIndex(reduction, cut, v);
        result.SetIndex(x, row, index);
        if (!reduction.dither) {
            continue;
        }
        const Colour& chosen = cut.table[index];
        const int errors[3] = {v.blue - chosen.blue, v.green - chosen.green, v.red - chosen.red};
        for (std::size_t c = 0; c != 3; ++c) {
            now[ahead][c] = (reduction.fixedPalette ? now[ahead][c] : 0) + 7 * errors[c] / 16;
            below[behind][c] += 3 * errors[c] / 16;
            below[at][c] += 5 * errors[c] / 16;
            below[ahead][c] += errors[c] / 16;
        }
    }
}

Picture EmptyResult(const Picture& source, const ReductionCase& reduction, const Cut& cut) {
    BITMAPINFOHEADER header = source.Header();
    header.biBitCount = static_cast<WORD>(reduction.depth == QV8_DEPTH_GREY ? 8 : reduction.depth);
    header.biCompression = BI_RGB;
    header.biClrUsed = reduction.depth == 8 && reduction.fixedPalette ? 216 : 0;
    header.biClrImportant = 0;
    header.biSizeImage =
        static_cast<DWORD>(RowBytesOf(header.biBitCount, header.biWidth)) * static_cast<DWORD>(header.biHeight);
    Picture result{Bytes(40)};
    result.SetHeader(header);
    result.bytes.resize(result.PixelOffset() + header.biSizeImage);
    for (std::size_t i = 0; i != cut.table.size(); ++i) {
        BYTE* const entry = result.TableEntry(i);
        entry[0] = cut.table[i].blue;
        entry[1] = cut.table[i].green;
        entry[2] = cut.table[i].red;
    }
    return result;
}

Picture SlowlyGrey(const Picture& source) {
    Cut ramp;
    for (unsigned i = 0; i != 256; ++i) {
        const auto level = static_cast<BYTE>(i);
        ramp.table.push_back({level, level, level});
    }
    Picture result = EmptyResult(source, {QV8_DEPTH_GREY, true, false, 0}, ramp);
    for (int row = 0; row != source.Height(); ++row) {
        for (int x = 0; x != source.Width(); ++x) {
            const Colour c = source.ColourAt(x, row);
            const float red = static_cast<float>(c.red) * 0.299F;
            const float green = static_cast<float>(c.green) * 0.587F;
            const float blue = static_cast<float>(c.blue) * 0.114F;
            result.SetIndex(x, row, static_cast<unsigned>(double{red} + double{green} + double{blue}));
        }
    }
    return result;
}

} // namespace

Picture SlowlyReduced(const Picture& source, const ReductionCase& given) {
    if (given.depth == QV8_DEPTH_GREY) {
        return SlowlyGrey(source);
    }
    ReductionCase reduction = given;
    reduction.fixedPalette = given.fixedPalette || given.depth == 1;
    Cut cut;
    if (reduction.fixedPalette) {
        cut.table = FixedTable(reduction.depth);
    } else if (source.Bits() <= 8) {
        cut.table = PopularColours(source);
    } else {
        cut = MedianCut(source, reduction.depth == 8 ? 256 : 16);
    }
    Picture result = EmptyResult(source, reduction, cut);
    Errors now(static_cast<std::size_t>(source.Width()) + 2);
    Errors below = now;
    for (int row = 0; row != source.Height(); ++row) {
        std::swap(now, below);
        std::fill(below.begin(), below.end(), std::array<int, 3>{});
        MapRow(source, reduction, cut, row, now, below, result);
    }
    return result;
}

} // namespace test
