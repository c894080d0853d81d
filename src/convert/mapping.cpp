#include "convert/mapping.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "frame/indices.h"
#include "frame/palettes.h"
#include "frame/rows.h"
#include "qv8com.h"

namespace qv8 {
namespace {

// Blue, green, red and nothing as signed 16-bit numbers, twice over, so that two weights are applied at once. Errors of
// a pixel are at most 255 and what a pixel is handed adds up to no more, so nothing is ever near the ends of the type.
using Twice = short __attribute__((vector_size(16)));

constexpr std::size_t kErrorBytes = 4 * sizeof(short); // of one pixel

Twice Clamp(Twice value) {
    constexpr Twice kLow = {};
    constexpr Twice kHigh = {255, 255, 255, 255, 255, 255, 255, 255};
    value = value > kLow ? value : kLow;
    return value < kHigh ? value : kHigh;
}

// Division by 16 that truncates toward zero.
Twice Sixteenth(Twice value) {
    return (value + ((value >> 15) & 15)) >> 4;
}

Twice LoadError(const short* error) {
    return Twice{error[0], error[1], error[2], 0, error[0], error[1], error[2], 0};
}

// Stores the second half.
void StoreError(short* error, Twice value) {
    const Twice second = __builtin_shufflevector(value, value, 4, 5, 6, 7, 4, 5, 6, 7);
    std::memcpy(error, &second, kErrorBytes);
}

Twice FirstHalfTwice(Twice value) {
    return __builtin_shufflevector(value, value, 0, 1, 2, 3, 0, 1, 2, 3);
}

// --- Choosing an index
// -------------------------------------------------------------------------------------------------

struct ByThreshold {
    unsigned least; // sum of the channels

    explicit ByThreshold(const Mapping& mapping, const RGBQUAD* /*palette*/) : least(mapping.threshold * 3U) {}
    unsigned operator()(unsigned blue, unsigned green, unsigned red) const {
        return blue + green + red >= least ? 1 : 0;
    }
};

struct ByFixedLevels {
    BYTE level[256];

    explicit ByFixedLevels(const Mapping& /*mapping*/, const RGBQUAD* /*palette*/) {
        for (int i = 0; i != 256; ++i) {
            level[i] = static_cast<BYTE>(i * 5.0 / 255.0 + 0.5);
        }
    }
    unsigned operator()(unsigned blue, unsigned green, unsigned red) const {
        return 36U * level[blue] + 6U * level[green] + level[red];
    }
};

// Cells were counted with value * 63 / 255 but are looked up with value / 4, so a colour may meet a neighbouring cell
// that lies in no box.
struct ByInverseMap {
    const BYTE* map;

    explicit ByInverseMap(const Mapping& mapping, const RGBQUAD* /*palette*/) : map(mapping.inverseMap) {}
    unsigned operator()(unsigned blue, unsigned green, unsigned red) const {
        return map[(blue >> 2) << 12 | (green >> 2) << 6 | red >> 2];
    }
};

// Distance and index in one number, so that the smallest is the nearest colour and the first of equal ones.
struct ByNearest {
    int blue[16];
    int green[16];
    int red[16];

    explicit ByNearest(const Mapping& /*mapping*/, const RGBQUAD* palette) {
        for (int i = 0; i != 16; ++i) {
            blue[i] = palette[i].rgbBlue;
            green[i] = palette[i].rgbGreen;
            red[i] = palette[i].rgbRed;
        }
    }
    unsigned operator()(unsigned b, unsigned g, unsigned r) const {
        int best = 0x7FFFFFFF;
        for (int i = 0; i != 16; ++i) {
            const int db = static_cast<int>(b) - blue[i];
            const int dg = static_cast<int>(g) - green[i];
            const int dr = static_cast<int>(r) - red[i];
            best = std::min(best, (db * db + dg * dg + dr * dr) * 16 + i);
        }
        return static_cast<unsigned>(best) % 16;
    }
};

// --- One row
// -----------------------------------------------------------------------------------------------------------

template <class Choose>
void MapRow(const Choose& choose, const MappingRows& rows, int width) {
    for (int i = 0; i < width; ++i) {
        rows.indices[i] = static_cast<BYTE>(choose(rows.colours.blue[i], rows.colours.green[i], rows.colours.red[i]));
    }
}

// The colours of a table as numbers, twice over.
struct PaletteTwice {
    Twice colours[256];
};

// Walks one row in scan direction `step` and hands each pixel's error on: 7/16 to the next, 3/16, 5/16 and 1/16 to the
// row below, behind, straight and ahead. What the row below gets is complete, and stored, one pixel later.
template <class Choose, bool kKeepErrors>
void DitherRow(const Choose& choose, const PaletteTwice& palette, const MappingRows& rows, int width, int step) {
    constexpr Twice kNextAndBehind = {7, 7, 7, 7, 3, 3, 3, 3};
    constexpr Twice kAheadAndStraight = {1, 1, 1, 1, 5, 5, 5, 5};
    const short* const current = rows.errors[0];
    short* const below = rows.errors[1];
    Twice carried = {};  // to the next pixel, in both halves
    Twice behind = {};   // in the second half: to the pixel below the one before, so far
    Twice straight = {}; // in the second half: to the pixel below this one, so far
    int x = step > 0 ? 0 : width - 1;
    for (int i = 0; i < width; ++i, x += step) {
        const auto blue = static_cast<short>(rows.colours.blue[x]);
        const auto green = static_cast<short>(rows.colours.green[x]);
        const auto red = static_cast<short>(rows.colours.red[x]);
        Twice source = {blue, green, red, 0, blue, green, red, 0};
        // What the pixel before has sent is added to what came from above, or has replaced it.
        if (kKeepErrors || i == 0) {
            source += LoadError(current + std::ptrdiff_t{4} * x);
        }
        const Twice value = Clamp(source + carried);
        const unsigned index =
            choose(static_cast<unsigned>(value[0]), static_cast<unsigned>(value[1]), static_cast<unsigned>(value[2]));
        rows.indices[x] = static_cast<BYTE>(index);
        const Twice left = value - palette.colours[index];
        const Twice nextAndBehind = Sixteenth(left * kNextAndBehind);
        const Twice aheadAndStraight = Sixteenth(left * kAheadAndStraight);
        StoreError(below + std::ptrdiff_t{4} * (x - step), behind + nextAndBehind);
        behind = straight + aheadAndStraight;
        straight = FirstHalfTwice(aheadAndStraight);
        carried = FirstHalfTwice(nextAndBehind);
    }
    StoreError(below + std::ptrdiff_t{4} * (x - step), behind);
}

PaletteTwice PaletteTwiceOf(const RGBQUAD* palette, std::uint32_t size) {
    PaletteTwice result = {};
    for (std::uint32_t i = 0; i != size; ++i) {
        const short colour[3] = {palette[i].rgbBlue, palette[i].rgbGreen, palette[i].rgbRed};
        result.colours[i] = LoadError(colour);
    }
    return result;
}

// --- The whole picture
// -------------------------------------------------------------------------------------------------

template <class Choose>
bool MapAll(const ColourReader& reader, const Mapping& mapping, MappingRows& rows, const NewPicture& result,
            const Progress& progress) {
    const DibView& view = result.view;
    const Choose choose(mapping, view.palette);
    const PaletteTwice palette = PaletteTwiceOf(view.palette, view.paletteSize);
    return ForEachRow(view.height, progress, [&](int row) {
        ReadColours(reader, row, 0, view.width, rows.colours);
        if (mapping.dither) {
            std::swap(rows.errors[0], rows.errors[1]);
            (mapping.keepErrors ? DitherRow<Choose, true> : DitherRow<Choose, false>)(choose, palette, rows, view.width,
                                                                                      row % 2 == 0 ? 1 : -1);
        } else {
            MapRow(choose, rows, view.width);
        }
        PackIndices(view.bitCount, rows.indices, view.width, result.Row(row), 0);
    });
}

} // namespace

MappingRows AllocateMappingRows(int width) {
    const auto pixels = static_cast<std::size_t>(width);
    const std::size_t errorBytes = (pixels + 2) * kErrorBytes;
    MappingRows rows = {};
    rows.block = AllocateWorkingBlock(2 * errorBytes + 4 * pixels);
    if (!rows.block) {
        SetErrorStatus(QV8_STATUS_MEMORY);
        return rows;
    }
    rows.errors[0] = rows.block.As<short>() + 4;
    rows.errors[1] = rows.errors[0] + 4 * (pixels + 2);
    BYTE* const bytes = rows.block.As<BYTE>() + 2 * errorBytes;
    rows.colours = {bytes, bytes + pixels, bytes + 2 * pixels};
    rows.indices = bytes + 3 * pixels;
    return rows;
}

bool MapColours(const ColourReader& reader, const Mapping& mapping, MappingRows& rows, const NewPicture& result,
                const Progress& progress) {
    switch (mapping.chooseBy) {
    case ChooseBy::kThreshold:
        return MapAll<ByThreshold>(reader, mapping, rows, result, progress);
    case ChooseBy::kFixedLevels:
        return MapAll<ByFixedLevels>(reader, mapping, rows, result, progress);
    case ChooseBy::kInverseMap:
        return MapAll<ByInverseMap>(reader, mapping, rows, result, progress);
    default:
        return MapAll<ByNearest>(reader, mapping, rows, result, progress);
    }
}

} // namespace qv8
