// Compiled once per target, see each_target.h.

#include "pixels/ycc_lanes.inl"

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

void GreyLevel(const PlanarRow& row, BYTE* __restrict result, int count) {
    const BYTE* __restrict const blue = row.blue;
    const BYTE* __restrict const green = row.green;
    const BYTE* __restrict const red = row.red;
    constexpr auto kRed = static_cast<float>(kLuminanceWeights.red);
    constexpr auto kGreen = static_cast<float>(kLuminanceWeights.green);
    constexpr auto kBlue = static_cast<float>(kLuminanceWeights.blue);
    for (int i = 0; i < count; ++i) {
        const double sum = static_cast<double>(static_cast<float>(red[i]) * kRed) +
                           static_cast<double>(static_cast<float>(green[i]) * kGreen) +
                           static_cast<double>(static_cast<float>(blue[i]) * kBlue);
        result[i] = static_cast<BYTE>(static_cast<int>(sum));
    }
}

// 24-bit pixels to greys without a detour over planar channels: a byte shuffle takes each channel of four pixels
// straight into four numbers, and another one writes each grey three times.
void Grey24(const BYTE* source, BYTE* result, int count) {
    constexpr BYTE kNone = 0xFF;
    constexpr BYTE kBlues[16] = {0, kNone, kNone, kNone, 3, kNone, kNone, kNone,
                                 6, kNone, kNone, kNone, 9, kNone, kNone, kNone};
    constexpr BYTE kThreeTimes[16] = {0, 0, 0, 4, 4, 4, 8, 8, 8, 12, 12, 12, kNone, kNone, kNone, kNone};
    const Bytes blues = LoadShuffle(kBlues);
    const Bytes toNext = reinterpret_cast<Bytes>(blues < BroadcastByte(kNone)) & BroadcastByte(1); // channel
    const Bytes greens = blues + toNext;
    const Bytes reds = greens + toNext;
    const Bytes threeTimes = LoadShuffle(kThreeTimes);
    int i = 0;
    for (; i + kLanes + 2 <= count; i += kLanes) { // four bytes more are read and written
        const Bytes pixels = LoadPixels24(source + 3 * i);
        const auto channel = [&](Bytes places) {
            return ToFloats(reinterpret_cast<Ints>(ShuffleBytes(pixels, places)));
        };
        const Ints sum = Truncate(WeightedSum({channel(blues), channel(greens), channel(reds)}, kLuminanceWeights));
        StorePixels24(result + 3 * i, ShuffleBytes(reinterpret_cast<Bytes>(sum), threeTimes));
    }
    for (; i < count; ++i) {
        BYTE grey;
        Luminance({const_cast<BYTE*>(source) + 3 * i, const_cast<BYTE*>(source) + 3 * i + 1,
                   const_cast<BYTE*>(source) + 3 * i + 2},
                  &grey, 1);
        result[3 * i] = result[3 * i + 1] = result[3 * i + 2] = grey;
    }
}

constexpr LuminanceKernels kKernels = {Luminance, GreyLevel, kHasByteShuffle ? Grey24 : nullptr};
