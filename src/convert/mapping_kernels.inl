// Compiled once per target, see each_target.h.

namespace narrow {
#include "simd/lanes_16_bytes.inl"
} // namespace narrow

// A ColourTwice in a register. Errors of a pixel are at most 255 and what a pixel is handed adds up to no more, so
// nothing is ever near the ends of the type.
using Twice = short __attribute__((vector_size(16)));

constexpr std::size_t kErrorBytes = 4 * sizeof(short); // of one pixel

inline Twice AsTwice(narrow::Words words) {
    return reinterpret_cast<Twice>(words);
}
inline narrow::Words AsWords(Twice value) {
    return reinterpret_cast<narrow::Words>(value);
}

inline Twice Clamp(Twice value) {
    return AsTwice(narrow::Min(narrow::Max(AsWords(value), narrow::BroadcastWord(0)), narrow::BroadcastWord(255)));
}

// One of two values, by a mask of all bits.
inline Twice Select(Twice mask, Twice ifSet, Twice ifClear) {
    return (mask & ifSet) | (~mask & ifClear);
}

// Division by 16 that truncates toward zero.
inline Twice Sixteenth(Twice value) {
    return (value + ((value >> 15) & 15)) >> 4;
}

inline Twice SecondHalfTwice(Twice value) {
    return __builtin_shufflevector(value, value, 4, 5, 6, 7, 4, 5, 6, 7);
}
inline Twice FirstHalfTwice(Twice value) {
    return __builtin_shufflevector(value, value, 0, 1, 2, 3, 0, 1, 2, 3);
}

inline Twice LoadTwice(const ColourTwice& colour) {
    Twice result;
    __builtin_memcpy(&result, colour, sizeof result);
    return result;
}

// The error of one pixel.
inline Twice LoadError(const short* error) {
    WORD once[4];
    __builtin_memcpy(once, error, sizeof once);
    return FirstHalfTwice(AsTwice(narrow::LoadFourWords(once)));
}

// The channels of a packed colour whose fourth byte is 0.
inline Twice LoadColour(const BYTE* colour) {
    return FirstHalfTwice(AsTwice(narrow::LoadFourBytesAsWords(colour)));
}

inline void StoreFirst(short* error, Twice value) {
    __builtin_memcpy(error, &value, kErrorBytes);
}

// --- Choosing an index -----------------------------------------------------------------------------------------------

struct ByFixedLevels {
    const BYTE* level;

    explicit ByFixedLevels(const IndexChoice& choice) : level(choice.level) {}
    unsigned operator()(unsigned blue, unsigned green, unsigned red) const {
        return 36U * level[blue] + 6U * level[green] + level[red];
    }
};

// Cells were counted with value * 63 / 255 but are looked up with value / 4, so a colour may meet a neighbouring cell
// that lies in no box.
struct ByInverseMap {
    const BYTE* map;

    explicit ByInverseMap(const IndexChoice& choice) : map(choice.inverseMap) {}
    unsigned operator()(unsigned blue, unsigned green, unsigned red) const {
        return map[(blue >> 2) << 12 | (green >> 2) << 6 | red >> 2];
    }
};

// Four distances at a time. Distance and index are one number, so that the smallest is the nearest colour and the first
// of equal ones.
struct ByNearest {
    narrow::Words blueAndGreen[4]; // of four colours each
    narrow::Words red[4];

    explicit ByNearest(const IndexChoice& choice) {
        __builtin_memcpy(blueAndGreen, choice.blueAndGreen, sizeof blueAndGreen);
        __builtin_memcpy(red, choice.red, sizeof red);
    }
    unsigned operator()(unsigned b, unsigned g, unsigned r) const {
        const auto pair = reinterpret_cast<narrow::Words>(narrow::BroadcastInt(static_cast<int>(b | g << 16)));
        const auto single = reinterpret_cast<narrow::Words>(narrow::BroadcastInt(static_cast<int>(r)));
        narrow::Ints best = Keys(0, pair, single);
        for (int group = 1; group != 4; ++group) {
            best = Min(best, Keys(group, pair, single));
        }
        best = Min(best, __builtin_shufflevector(best, best, 2, 3, 0, 1));
        best = Min(best, __builtin_shufflevector(best, best, 1, 0, 3, 2));
        return static_cast<unsigned>(best[0]) % 16;
    }

private:
    narrow::Ints Keys(int group, narrow::Words pair, narrow::Words single) const {
        const narrow::Words two = pair - blueAndGreen[group];
        const narrow::Words one = single - red[group];
        const narrow::Ints distances = narrow::MultiplyAddPairs(two, two) + narrow::MultiplyAddPairs(one, one);
        return distances << 4 | (narrow::Ints{0, 1, 2, 3} + 4 * group);
    }
    static narrow::Ints Min(narrow::Ints a, narrow::Ints b) {
        const narrow::Ints isGreater = a > b;
        return (isGreater & b) | (~isGreater & a);
    }
};

// --- One row ---------------------------------------------------------------------------------------------------------

template <class Choose>
void MapRow(const IndexChoice& choice, const MappingRows& rows, int width) {
    const Choose choose(choice);
    for (int i = 0; i < width; ++i) {
        rows.indices[i] = static_cast<BYTE>(choose(rows.colours.blue[i], rows.colours.green[i], rows.colours.red[i]));
    }
}

// Walks one row in scan direction `step` and hands each pixel's error on: 7/16 to the next, 3/16, 5/16 and 1/16 to the
// row below, behind, straight and ahead. What the row below gets is complete, and stored, one pixel later.
template <class Choose, bool kKeepErrors>
void DitherRow(const IndexChoice& choice, const ColourTwice* palette, const MappingRows& rows, int width, int step) {
    constexpr Twice kNextAndBehind = {7, 7, 7, 7, 3, 3, 3, 3};
    constexpr Twice kAheadAndStraight = {1, 1, 1, 1, 5, 5, 5, 5};
    const Choose choose(choice);
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
        const Twice left = value - LoadTwice(palette[index]);
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
void DitherBlackAndWhite(const IndexChoice& choice, const ColourTwice* /*palette*/, const MappingRows& rows, int width,
                         int step) {
    constexpr Twice kWhite = {255, 255, 255, 0, 255, 255, 255, 0};
    constexpr Twice kOnes = {1, 1, 1, 0, 1, 1, 1, 0};
    constexpr Twice kBehindAndStraight = {3, 3, 3, 3, 5, 5, 5, 5};
    const narrow::Words sevenSixteenths = narrow::BroadcastWord(7 * 65536 / 16);
    const narrow::Ints justBlack = narrow::BroadcastInt(static_cast<int>(choice.least) - 1);
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
        fromBlack = AsTwice(narrow::MultiplyHigh(AsWords(value), sevenSixteenths));
        fromWhite = AsTwice(narrow::MultiplyHigh(AsWords(kWhite - value), sevenSixteenths));
        const narrow::Ints parts = narrow::MultiplyAddPairs(AsWords(value), AsWords(kOnes));
        const narrow::Ints sum = parts + __builtin_shufflevector(parts, parts, 1, 0, 3, 2);
        isWhite = reinterpret_cast<Twice>(sum > justBlack);
        rows.indices[x] = static_cast<BYTE>(isWhite[0] & 1);
        const Twice left = value - (kWhite & isWhite);
        const Twice shares = Sixteenth(left * kBehindAndStraight);
        StoreFirst(below + std::ptrdiff_t{4} * (x - step), behind + shares);
        behind = straight + SecondHalfTwice(shares);
        straight = Sixteenth(left);
    }
    StoreFirst(below + std::ptrdiff_t{4} * (x - step), behind);
}

constexpr MappingKernels kKernels = {
    {nullptr, MapRow<ByFixedLevels>, MapRow<ByInverseMap>, MapRow<ByNearest>},
    {{DitherBlackAndWhite, DitherRow<ByFixedLevels, false>, DitherRow<ByInverseMap, false>,
      DitherRow<ByNearest, false>},
     {DitherBlackAndWhite, DitherRow<ByFixedLevels, true>, DitherRow<ByInverseMap, true>, DitherRow<ByNearest, true>}}};
