#include "convert/mapping.h"

#include <emmintrin.h>

#include <cstring>
#include <type_traits>
#include <utility>

#include "convert/grey_dither.h"
#include "frame/block_parts.h"
#include "frame/rows.h"
#include "pixels/indices.h"
#include "pixels/palettes.h"
#include "qv8com.h"

namespace qv8 {
namespace {

// Blue, green, red and nothing as signed 16-bit numbers, twice over, so that two weights are applied at once. Errors of
// a pixel are at most 255 and what a pixel is handed adds up to no more, so nothing is ever near the ends of the type.
using Twice = short __attribute__((vector_size(16)));

constexpr std::size_t kErrorBytes = 4 * sizeof(short); // of one pixel

Twice Clamp(Twice value) {
    const __m128i atLeast0 = _mm_max_epi16(reinterpret_cast<__m128i>(value), _mm_setzero_si128());
    return reinterpret_cast<Twice>(_mm_min_epi16(atLeast0, _mm_set1_epi16(255)));
}

// One of two values, by a mask of all bits.
Twice Select(Twice mask, Twice ifSet, Twice ifClear) {
    const auto bits = reinterpret_cast<__m128i>(mask);
    return reinterpret_cast<Twice>(_mm_or_si128(_mm_and_si128(bits, reinterpret_cast<__m128i>(ifSet)),
                                                _mm_andnot_si128(bits, reinterpret_cast<__m128i>(ifClear))));
}

// Division by 16 that truncates toward zero.
Twice Sixteenth(Twice value) {
    return (value + ((value >> 15) & 15)) >> 4;
}

// The error of one pixel.
Twice LoadError(const short* error) {
    const __m128i once = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(error));
    return reinterpret_cast<Twice>(_mm_unpacklo_epi64(once, once));
}

// The channels of a packed colour whose fourth byte is 0.
Twice LoadColour(const BYTE* colour) {
    int packed;
    std::memcpy(&packed, colour, sizeof packed);
    const __m128i once = _mm_unpacklo_epi8(_mm_cvtsi32_si128(packed), _mm_setzero_si128());
    return reinterpret_cast<Twice>(_mm_unpacklo_epi64(once, once));
}

void StoreFirst(short* error, Twice value) {
    std::memcpy(error, &value, kErrorBytes);
}

Twice SecondHalfTwice(Twice value) {
    return __builtin_shufflevector(value, value, 4, 5, 6, 7, 4, 5, 6, 7);
}

Twice FirstHalfTwice(Twice value) {
    return __builtin_shufflevector(value, value, 0, 1, 2, 3, 0, 1, 2, 3);
}

// --- Choosing an index -----------------------------------------------------------------------------------------------

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

// Four distances at a time. Distance and index are one number, so that the smallest is the nearest colour and the first
// of equal ones.
struct ByNearest {
    __m128i blueAndGreen[4]; // of four colours each
    __m128i red[4];
    __m128i index[4];

    explicit ByNearest(const Mapping& /*mapping*/, const RGBQUAD* palette) {
        for (int group = 0; group != 4; ++group) {
            int pairs[4];
            int reds[4];
            for (int i = 0; i != 4; ++i) {
                const RGBQUAD& colour = palette[4 * group + i];
                pairs[i] = colour.rgbBlue | colour.rgbGreen << 16;
                reds[i] = colour.rgbRed;
            }
            std::memcpy(&blueAndGreen[group], pairs, sizeof pairs);
            std::memcpy(&red[group], reds, sizeof reds);
            index[group] = _mm_setr_epi32(4 * group, 4 * group + 1, 4 * group + 2, 4 * group + 3);
        }
    }
    unsigned operator()(unsigned b, unsigned g, unsigned r) const {
        const __m128i pair = _mm_set1_epi32(static_cast<int>(b | g << 16));
        const __m128i single = _mm_set1_epi32(static_cast<int>(r));
        __m128i best = Keys(0, pair, single);
        for (int group = 1; group != 4; ++group) {
            best = Smaller(best, Keys(group, pair, single));
        }
        best = Smaller(best, _mm_shuffle_epi32(best, _MM_SHUFFLE(1, 0, 3, 2)));
        best = Smaller(best, _mm_shuffle_epi32(best, _MM_SHUFFLE(2, 3, 0, 1)));
        return static_cast<unsigned>(_mm_cvtsi128_si32(best)) % 16;
    }

private:
    __m128i Keys(int group, __m128i pair, __m128i single) const {
        const __m128i two = _mm_sub_epi16(pair, blueAndGreen[group]);
        const __m128i one = _mm_sub_epi16(single, red[group]);
        const __m128i distance = _mm_add_epi32(_mm_madd_epi16(two, two), _mm_madd_epi16(one, one));
        return _mm_or_si128(_mm_slli_epi32(distance, 4), index[group]);
    }
    static __m128i Smaller(__m128i a, __m128i b) {
        const __m128i isGreater = _mm_cmpgt_epi32(a, b);
        return _mm_or_si128(_mm_and_si128(isGreater, b), _mm_andnot_si128(isGreater, a));
    }
};

// --- One row ---------------------------------------------------------------------------------------------------------

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
        Twice source = LoadColour(rows.packed + std::ptrdiff_t{4} * x);
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
        StoreFirst(below + std::ptrdiff_t{4} * (x - step), SecondHalfTwice(behind + nextAndBehind));
        behind = straight + aheadAndStraight;
        straight = FirstHalfTwice(aheadAndStraight);
        carried = FirstHalfTwice(nextAndBehind);
    }
    StoreFirst(below + std::ptrdiff_t{4} * (x - step), SecondHalfTwice(behind));
}

// The same for black and white, where the way from one pixel to the next is short: what a black pixel and what a white
// one would hand on are both ready when it is known which of them this pixel becomes.
void DitherBlackAndWhite(const ByThreshold& choose, const MappingRows& rows, int width, int step) {
    constexpr Twice kWhite = {255, 255, 255, 0, 255, 255, 255, 0};
    constexpr Twice kOnes = {1, 1, 1, 0, 1, 1, 1, 0};
    constexpr Twice kBehindAndStraight = {3, 3, 3, 3, 5, 5, 5, 5};
    const __m128i sevenSixteenths = _mm_set1_epi16(7 * 65536 / 16);
    const __m128i justBlack = _mm_set1_epi32(static_cast<int>(choose.least) - 1);
    const short* const current = rows.errors[0];
    short* const below = rows.errors[1];
    Twice fromBlack = {}; // handed on by the pixel before if it is black
    Twice fromWhite = {}; // taken away by it if it is white
    Twice isWhite = {};   // all bits set if it is
    Twice behind = {};    // to the pixel below the one before, so far
    Twice straight = {};  // to the pixel below this one, so far
    int x = step > 0 ? 0 : width - 1;
    for (int i = 0; i < width; ++i, x += step) {
        const Twice base = LoadColour(rows.packed + std::ptrdiff_t{4} * x) + LoadError(current + std::ptrdiff_t{4} * x);
        const Twice value = Select(isWhite, Clamp(base - fromWhite), Clamp(base + fromBlack));
        fromBlack = reinterpret_cast<Twice>(_mm_mulhi_epu16(reinterpret_cast<__m128i>(value), sevenSixteenths));
        fromWhite =
            reinterpret_cast<Twice>(_mm_mulhi_epu16(reinterpret_cast<__m128i>(kWhite - value), sevenSixteenths));
        const __m128i parts = _mm_madd_epi16(reinterpret_cast<__m128i>(value), reinterpret_cast<__m128i>(kOnes));
        const __m128i sum = _mm_add_epi32(parts, _mm_shuffle_epi32(parts, _MM_SHUFFLE(2, 3, 0, 1)));
        isWhite = reinterpret_cast<Twice>(_mm_cmpgt_epi32(sum, justBlack));
        rows.indices[x] = static_cast<BYTE>(isWhite[0] & 1);
        const Twice left = value - (kWhite & isWhite);
        const Twice shares = Sixteenth(left * kBehindAndStraight);
        StoreFirst(below + std::ptrdiff_t{4} * (x - step), behind + shares);
        behind = straight + SecondHalfTwice(shares);
        straight = Sixteenth(left);
    }
    StoreFirst(below + std::ptrdiff_t{4} * (x - step), behind);
}

PaletteTwice PaletteTwiceOf(const RGBQUAD* palette, std::uint32_t size) {
    PaletteTwice result = {};
    for (std::uint32_t i = 0; i != size; ++i) {
        const BYTE colour[4] = {palette[i].rgbBlue, palette[i].rgbGreen, palette[i].rgbRed, 0};
        result.colours[i] = LoadColour(colour);
    }
    return result;
}

// --- The whole picture -----------------------------------------------------------------------------------------------

template <class Choose>
void DitherOneRow(const Choose& choose, bool keepErrors, const PaletteTwice& palette, const MappingRows& rows,
                  int width, int step) {
    if constexpr (std::is_same_v<Choose, ByThreshold>) {
        DitherBlackAndWhite(choose, rows, width, step);
    } else if (keepErrors) {
        DitherRow<Choose, true>(choose, palette, rows, width, step);
    } else {
        DitherRow<Choose, false>(choose, palette, rows, width, step);
    }
}

template <class Choose>
bool MapAll(const ColourReader& reader, const Mapping& mapping, MappingRows& rows, const NewPicture& result,
            const Progress& progress) {
    const DibView& view = result.view;
    const Choose choose(mapping, view.palette);
    const PaletteTwice palette = PaletteTwiceOf(view.palette, view.paletteSize);
    const auto pack = ThePixelKernels().bgrx.encode;
    return ForEachRow(view.height, progress, [&](int row) {
        ReadColours(reader, row, 0, view.width, rows.colours);
        if (mapping.dither) {
            std::swap(rows.errors[0], rows.errors[1]);
            pack(rows.colours, rows.packed, view.width);
            DitherOneRow(choose, mapping.keepErrors, palette, rows, view.width, row % 2 == 0 ? 1 : -1);
        } else {
            MapRow(choose, rows, view.width);
        }
        PackIndices(view.bitCount, rows.indices, view.width, result.Row(row), 0);
    });
}

} // namespace

MappingRows AllocateMappingRows(int width) {
    const auto pixels = static_cast<std::uint64_t>(width);
    MappingRows rows = {};
    rows.block = AllocateParts([&](BlockParts& parts) {
        for (short*& errors : rows.errors) {
            parts.Take(errors, 4 * (pixels + 2));
        }
        parts.Take(rows.colours.blue, pixels);
        parts.Take(rows.colours.green, pixels);
        parts.Take(rows.colours.red, pixels);
        parts.Take(rows.indices, pixels);
        parts.Take(rows.packed, 4 * pixels);
    });
    if (!rows.block) {
        return rows;
    }
    for (short*& errors : rows.errors) {
        errors += 4; // the pixel beside the first
    }
    return rows;
}

bool MapColours(const ColourReader& reader, const Mapping& mapping, MappingRows& rows, const NewPicture& result,
                const Progress& progress) {
    switch (mapping.chooseBy) {
    case ChooseBy::kThreshold:
        if (mapping.dither && IsGreyReader(reader)) {
            return DitherGreys(reader, mapping.threshold, rows, result, progress);
        }
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
