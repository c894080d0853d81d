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

// The weights are whole thousandths. Sums of so many thousandths that they lie between two whole numbers lie there
// however they are rounded; which side of a whole number the others are rounded to is found the long way.
void GreyLevel24(const BYTE* pixels, BYTE* levels, int count) {
    constexpr auto kThousandths = [](double weight) { return static_cast<int>(weight * 1000 + 0.5); };
    constexpr int kBlue = kThousandths(kLuminanceWeights.blue);
    constexpr int kGreen = kThousandths(kLuminanceWeights.green);
    constexpr int kRed = kThousandths(kLuminanceWeights.red);
    constexpr float kHalfOfOne = 0.0005F;
    ForEachPixelVector<kLanes, 24, 8>(pixels, levels, count, [](const BYTE* source, BYTE* result) {
        const Ints colours = LoadPixelInts(source);
        const Ints sum = ProductsOf(colours & BroadcastInt(0xFF00FF), kRed << 16 | kBlue) +
                         ProductsOf(colours >> 8 & BroadcastInt(0xFF), kGreen);
        const Floats level = ToFloats(sum) * Broadcast(0.001F) + Broadcast(kHalfOfOne);
        const Ints truncated = Truncate(level);
        StoreIntsAsBytes(result, truncated);
        const Floats fraction = level - ToFloats(truncated);
        unsigned whole = MoveMask(reinterpret_cast<Ints>(fraction < Broadcast(2 * kHalfOfOne)));
        for (; whole != 0; whole &= whole - 1) {
            const int lane = __builtin_ctz(whole);
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

void Luminance24(const BYTE* source, BYTE* result, int count) {
    ForEachPixelVector<kLanes, 24, 8>(source, result, count, [](const BYTE* pixels, BYTE* luminances) {
        StoreIntsAsBytes(luminances, LuminancesOf(LoadPixelInts(pixels)));
    });
}

void Grey24(const BYTE* source, BYTE* result, int count) {
    ForEachPixelVector<kLanes, 24, 24>(source, result, count, [](const BYTE* pixels, BYTE* greys) {
        const Ints grey = LuminancesOf(LoadPixelInts(pixels));
        StorePixelInts(greys, grey | grey << 8 | grey << 16);
    });
}

constexpr LuminanceKernels kKernels = {Luminance, Luminance24, GreyLevel24, Grey24};
