// Compiled once per target, see each_target.h.

#include "pixels/ycc_lanes.inl"
#include "simd/packed_pixels.inl"

void Luminance(const PlanarRow& channels, BYTE* result, int count) {
    const PlanarRow row = channels; // which storing bytes cannot change
    const auto step = [](const BYTE* blue, const BYTE* green, const BYTE* red, BYTE* luminance) {
        const Colours colours = {LoadBytesAsFloats(blue), LoadBytesAsFloats(green), LoadBytesAsFloats(red)};
        StoreFloatsAsBytes(luminance, WeightedSum(colours, kLuminanceWeights));
    };
    int i = 0;
    for (; i + kLanes <= count; i += kLanes) {
        step(row.blue + i, row.green + i, row.red + i, result + i);
    }
    if (i < count) {
        const auto rest = static_cast<std::size_t>(count - i);
        BYTE rests[3][kLanes] = {};
        BYTE luminance[kLanes];
        std::memcpy(rests[0], row.blue + i, rest);
        std::memcpy(rests[1], row.green + i, rest);
        std::memcpy(rests[2], row.red + i, rest);
        step(rests[0], rests[1], rests[2], luminance);
        std::memcpy(result + i, luminance, rest);
    }
}

inline BYTE GreyLevelOfPixel(const BYTE* pixel) {
    const auto product = [&](int channel, double weight) {
        return static_cast<double>(static_cast<float>(pixel[channel]) * static_cast<float>(weight));
    };
    const double sum =
        product(2, kLuminanceWeights.red) + product(1, kLuminanceWeights.green) + product(0, kLuminanceWeights.blue);
    return static_cast<BYTE>(static_cast<int>(sum));
}

inline Ints ProductsOf(Ints channels, int weights) {
    return MultiplyAddPairs(reinterpret_cast<Words>(channels), reinterpret_cast<Words>(BroadcastInt(weights)));
}

// The weights in 65536ths are not exact: the true sum is up to kError less or more. It is a whole number of
// thousandths, so that only sums this close to a whole number are doubtful, and depend on how the true one is rounded.
constexpr int In65536ths(double weight) {
    return static_cast<int>(weight * 65536 + 0.5);
}
constexpr int kRed = In65536ths(kLuminanceWeights.red);
constexpr int kHalfGreen = In65536ths(kLuminanceWeights.green / 2); // the whole does not fit 16 bits with sign
constexpr int kBlue = In65536ths(kLuminanceWeights.blue);
constexpr int kError = 100;
static_assert(kRed + 2 * kHalfGreen + kBlue == 65536);

// Words of kLanes pixels: blue beside red, and two that come to twice the green.
struct PixelWords {
    Ints blueAndRed;
    Ints twiceGreen;
};

inline PixelWords LoadPixelWords(const BYTE* pixels) {
    if constexpr (kHasByteShuffle) {
        constexpr BYTE kNo = 0xFF;
        constexpr BYTE kBlueAndRed[16] = {0, kNo, 2, kNo, 3, kNo, 5, kNo, 6, kNo, 8, kNo, 9, kNo, 11, kNo};
        constexpr BYTE kTwoGreens[16] = {1, kNo, 1, kNo, 4, kNo, 4, kNo, 7, kNo, 7, kNo, 10, kNo, 10, kNo};
        const Bytes bytes = LoadPixels24(pixels);
        return {reinterpret_cast<Ints>(ShuffleBytes(bytes, LoadShuffle(kBlueAndRed))),
                reinterpret_cast<Ints>(ShuffleBytes(bytes, LoadShuffle(kTwoGreens)))};
    }
    const Ints colours = LoadPixelInts(pixels);
    return {colours & BroadcastInt(0xFF00FF), colours >> 7 & BroadcastInt(0x1FE)};
}

// Of kLanes pixels, and kError.
inline Ints LoadSums(const BYTE* pixels) {
    const PixelWords words = LoadPixelWords(pixels);
    return ProductsOf(words.blueAndRed, kRed << 16 | kBlue) +
           ProductsOf(words.twiceGreen, kHalfGreen << 16 | kHalfGreen) + BroadcastInt(kError);
}
inline Ints AreDoubtful(Ints sums) {
    return reinterpret_cast<Ints>(BroadcastInt(2 * kError + 1) > (sums & BroadcastInt(0xFFFF)));
}

constexpr int kSums = 2 * kLanes; // pixels at a time

struct Sums {
    Ints first;
    Ints second;

    explicit Sums(const BYTE* pixels) : first(LoadSums(pixels)), second(LoadSums(pixels + 3 * kLanes)) {}
    void Store(BYTE* result) const {
        StoreIntsAsBytes(result, first >> 16, second >> 16);
    }
    bool HasDoubtful() const {
        return MoveMask(AreDoubtful(first) | AreDoubtful(second)) != 0;
    }
    unsigned Doubtful() const {
        return MoveMask(AreDoubtful(first)) | MoveMask(AreDoubtful(second)) << kLanes;
    }
};

// Stores the sums, and runs correct(source, result) for kSums pixels of which some are doubtful: with wide registers
// for those of many pixels at once, as no processor could foresee where they are. With narrow ones that costs more.
template <class Correct>
inline void StoreSums(const BYTE* pixels, BYTE* levels, int count, Correct correct) {
    if constexpr (kLanes > 4) {
        constexpr int kSteps = 64;
        int doubtful[kSteps];
        while (count >= kSums + kPixelsBeyond) {
            const int steps = std::min(kSteps, (count - kPixelsBeyond) / kSums);
            int found = 0;
            for (int step = 0; step < steps; ++step) {
                const Sums sums(pixels + 3 * kSums * step);
                sums.Store(levels + kSums * step);
                doubtful[found] = step;
                found += sums.HasDoubtful() ? 1 : 0;
            }
            for (int i = 0; i < found; ++i) {
                correct(pixels + 3 * kSums * doubtful[i], levels + kSums * doubtful[i]);
            }
            pixels += 3 * kSums * steps;
            levels += kSums * steps;
            count -= kSums * steps;
        }
    }
    ForEachPixelVector<kSums, 24, 8>(pixels, levels, count, [=](const BYTE* source, BYTE* result) {
        const Sums sums(source);
        sums.Store(result);
        if (sums.HasDoubtful()) {
            correct(source, result);
        }
    });
}

void GreyLevel24(const BYTE* pixels, BYTE* levels, int count) {
    StoreSums(pixels, levels, count, [](const BYTE* source, BYTE* result) {
        for (unsigned lanes = Sums(source).Doubtful(); lanes != 0; lanes &= lanes - 1) {
            const int lane = __builtin_ctz(lanes);
            result[lane] = GreyLevelOfPixel(source + 3 * lane);
        }
    });
}

// Of pixels as LoadPixelInts gives them.
inline Ints LuminancesOf(Ints pixels) {
    const Ints byte = BroadcastInt(0xFF);
    return Truncate(WeightedSum({ToFloats(pixels & byte), ToFloats(pixels >> 8 & byte), ToFloats(pixels >> 16)},
                                kLuminanceWeights));
}

void Luminance24(const BYTE* pixels, BYTE* luminances, int count) {
    StoreSums(pixels, luminances, count, [](const BYTE* source, BYTE* result) {
        StoreIntsAsBytes(result, LuminancesOf(LoadPixelInts(source)), LuminancesOf(LoadPixelInts(source + 3 * kLanes)));
    });
}

void Grey24(const BYTE* source, BYTE* result, int count) {
    ForEachPixelVector<kLanes, 24, 24>(source, result, count, [](const BYTE* pixels, BYTE* greys) {
        const Ints grey = LuminancesOf(LoadPixelInts(pixels));
        StorePixelInts(greys, grey | grey << 8 | grey << 16);
    });
}

constexpr LuminanceKernels kKernels = {Luminance, Luminance24, GreyLevel24, Grey24};
