// Compiled once per target, see each_target.h.

constexpr int kPixelBytes = 3;

inline int LoadInt(const BYTE* bytes) {
    int value;
    __builtin_memcpy(&value, bytes, sizeof value);
    return value;
}

using FourPixels = BYTE __attribute__((vector_size(16)));

// Four pixels backwards, each with a byte of the next one.
inline FourPixels LoadFourBackwards(const BYTE* pixels) {
    FourPixels four;
    __builtin_memcpy(&four, pixels, sizeof four);
    return __builtin_shufflevector(four, four, 9, 10, 11, 12, 6, 7, 8, 9, 3, 4, 5, 6, 0, 1, 2, 3);
}

// A pixel and a byte of the next one in each lane, the first pixel in the last lane.
inline Ints LoadBackwards(const BYTE* pixels) {
    Ints result = {};
    if constexpr (kHasByteShuffle) {
        FourPixels fours[kLanes / 4];
        for (int k = 0; k < kLanes / 4; ++k) {
            fours[k] = LoadFourBackwards(pixels + (kLanes - 4 - 4 * k) * kPixelBytes);
        }
        __builtin_memcpy(&result, fours, sizeof result);
    } else {
        for (int lane = 0; lane < kLanes; ++lane) {
            result[lane] = LoadInt(pixels + (kLanes - 1 - lane) * kPixelBytes);
        }
    }
    return result;
}

// A bit of each of kLanes pixels, that of the first one highest.
inline unsigned AreWhite(const BYTE* pixels, Ints below) {
    const Ints colours = LoadBackwards(pixels);
    const Ints byte = BroadcastInt(0xFF);
    const Ints sums = (colours & byte) + (colours >> 8 & byte) + (colours >> 16 & byte);
    return MoveMask(reinterpret_cast<Ints>(sums > below));
}

inline unsigned IsWhite(const BYTE* pixel, int least) {
    return pixel[0] + pixel[1] + pixel[2] >= least ? 1U : 0U;
}

void Threshold24(const BYTE* pixels, int least, int count, BYTE* bits) {
    constexpr int kReadBeyond = 2; // pixels
    const Ints below = BroadcastInt(least - 1);
    int i = 0;
    for (; i + 8 + kReadBeyond <= count; i += 8) {
        unsigned byte = 0;
        for (int k = 0; k < 8; k += kLanes) {
            byte = byte << kLanes | AreWhite(pixels + std::ptrdiff_t{kPixelBytes} * (i + k), below);
        }
        bits[i / 8] = static_cast<BYTE>(byte);
    }
    for (; i < count; i += 8) {
        unsigned byte = 0;
        for (int at = i; at < i + 8; ++at) {
            byte = byte << 1U | (at < count ? IsWhite(pixels + std::ptrdiff_t{kPixelBytes} * at, least) : 0U);
        }
        bits[i / 8] = static_cast<BYTE>(byte);
    }
}

constexpr ThresholdKernels kKernels = {Threshold24};
