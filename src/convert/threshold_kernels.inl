// Compiled once per target, see each_target.h.

#include "simd/packed_pixels.inl"

struct ReversedBits {
    BYTE of[256];
};

constexpr ReversedBits kReversed = [] {
    ReversedBits reversed = {};
    for (unsigned byte = 0; byte != 256; ++byte) {
        for (unsigned bit = 0; bit != 8; ++bit) {
            const unsigned bits = unsigned{reversed.of[byte]} << 1U;
            reversed.of[byte] = static_cast<BYTE>(bits | (byte >> bit & 1U));
        }
    }
    return reversed;
}();

// A bit of each of kLanes pixels, that of the first one lowest.
inline unsigned AreWhite(const BYTE* pixels, Ints below) {
    const Ints colours = LoadPixelInts(pixels);
    const Ints byte = BroadcastInt(0xFF);
    const Ints sums = (colours & byte) + (colours >> 8 & byte) + (colours >> 16);
    return MoveMask(reinterpret_cast<Ints>(sums > below));
}

void Threshold24(const BYTE* pixels, int least, int count, BYTE* bits) {
    const Ints below = BroadcastInt(least - 1);
    ForEachPixelVector<8, 24, 1>(pixels, bits, count, [&](const BYTE* eight, BYTE* result) {
        unsigned white = 0;
        for (int k = 0; k < 8; k += kLanes) {
            white |= AreWhite(eight + std::ptrdiff_t{3} * k, below) << k;
        }
        *result = kReversed.of[white];
    });
    if (count % 8 != 0) {
        bits[count / 8] &= static_cast<BYTE>(0xFF00U >> (count % 8));
    }
}

constexpr ThresholdKernels kKernels = {Threshold24};
