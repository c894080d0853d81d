// Compiled once per target, see each_target.h. Products fit 16 bits, so that eight or sixteen pixels fit a
// register.

#include "simd/packed_pixels.inl"
#include "simd/tripled_bytes.inl"

// The divisions by 31, 63 and 255, as a product and a shift, and the proof of it for every value.
constexpr unsigned kWiden5Factor = 2106;
constexpr unsigned kWiden5Shift = 8;
constexpr unsigned kWiden6Factor = 49; // value * 85 / 21 is value * 4 + value / 21
constexpr unsigned kWiden6Shift = 10;
constexpr unsigned kNarrow5Factor = 249;
constexpr unsigned kNarrow5Shift = 11;
constexpr unsigned kNarrow6Factor = 253;
constexpr unsigned kNarrow6Shift = 10;

constexpr bool FactorsAreExact() {
    bool exact = true;
    for (unsigned v = 0; v != 64; ++v) {
        exact = exact && (v > 31 || (v * kWiden5Factor <= 0xFFFF && (v * kWiden5Factor >> kWiden5Shift) == Widen5(v)));
        exact = exact && v * 4 + (v * kWiden6Factor >> kWiden6Shift) == Widen6(v);
    }
    for (unsigned v = 0; v != 256; ++v) {
        exact = exact && v * kNarrow5Factor <= 0xFFFF && (v * kNarrow5Factor >> kNarrow5Shift) == Narrow5(v);
        exact = exact && v * kNarrow6Factor <= 0xFFFF && (v * kNarrow6Factor >> kNarrow6Shift) == Narrow6(v);
    }
    return exact;
}
static_assert(FactorsAreExact());

inline WORD FastWiden5(unsigned value) {
    return static_cast<WORD>(static_cast<WORD>(value * kWiden5Factor) >> kWiden5Shift);
}
inline WORD FastWiden6(unsigned value) {
    return static_cast<WORD>(value * 4 + (static_cast<WORD>(value * kWiden6Factor) >> kWiden6Shift));
}
inline WORD FastNarrow5(unsigned value) {
    return static_cast<WORD>(static_cast<WORD>(value * kNarrow5Factor) >> kNarrow5Shift);
}
inline WORD FastNarrow6(unsigned value) {
    return static_cast<WORD>(static_cast<WORD>(value * kNarrow6Factor) >> kNarrow6Shift);
}

inline WORD LoadWord(const BYTE* source) {
    WORD word;
    __builtin_memcpy(&word, source, sizeof word);
    return word;
}
inline void StoreWord(BYTE* result, unsigned value) {
    const WORD word = static_cast<WORD>(value);
    __builtin_memcpy(result, &word, sizeof word);
}

void Decode555(const BYTE* __restrict source, const PlanarRow& row, int count) {
    BYTE* __restrict const blue = row.blue;
    BYTE* __restrict const green = row.green;
    BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        const WORD word = LoadWord(source + 2 * i);
        blue[i] = static_cast<BYTE>(FastWiden5(word & 31U));
        green[i] = static_cast<BYTE>(FastWiden5((word >> 5U) & 31U));
        red[i] = static_cast<BYTE>(FastWiden5((word >> 10U) & 31U));
    }
}

void Decode565(const BYTE* __restrict source, const PlanarRow& row, int count) {
    BYTE* __restrict const blue = row.blue;
    BYTE* __restrict const green = row.green;
    BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        const WORD word = LoadWord(source + 2 * i);
        blue[i] = static_cast<BYTE>(FastWiden5(word & 31U));
        green[i] = static_cast<BYTE>(FastWiden6((word >> 5U) & 63U));
        red[i] = static_cast<BYTE>(FastWiden5((word >> 11U) & 31U));
    }
}

void DecodeBlack(const BYTE* /*source*/, const PlanarRow& row, int count) {
    const auto bytes = static_cast<std::size_t>(count);
    __builtin_memset(row.blue, 0, bytes);
    __builtin_memset(row.green, 0, bytes);
    __builtin_memset(row.red, 0, bytes);
}

void Encode555(const PlanarRow& row, BYTE* __restrict result, int count) {
    const BYTE* __restrict const blue = row.blue;
    const BYTE* __restrict const green = row.green;
    const BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        StoreWord(result + 2 * i,
                  static_cast<unsigned>(FastNarrow5(red[i]) << 10 | FastNarrow5(green[i]) << 5 | FastNarrow5(blue[i])));
    }
}

void Encode565(const PlanarRow& row, BYTE* __restrict result, int count) {
    const BYTE* __restrict const blue = row.blue;
    const BYTE* __restrict const green = row.green;
    const BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        StoreWord(result + 2 * i,
                  static_cast<unsigned>(FastNarrow5(red[i]) << 11 | FastNarrow6(green[i]) << 5 | FastNarrow5(blue[i])));
    }
}

template <int kBytes>
inline void DecodePacked(const BYTE* __restrict source, const PlanarRow& row, int count) {
    BYTE* __restrict const blue = row.blue;
    BYTE* __restrict const green = row.green;
    BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        blue[i] = source[kBytes * i];
        green[i] = source[kBytes * i + 1];
        red[i] = source[kBytes * i + 2];
    }
}

inline DWORD LoadDword(const BYTE* source) {
    DWORD value;
    __builtin_memcpy(&value, source, sizeof value);
    return value;
}
inline void StoreDword(BYTE* result, DWORD value) {
    __builtin_memcpy(result, &value, sizeof value);
}
inline void StorePixel24(BYTE* result, DWORD value) {
    result[0] = static_cast<BYTE>(value);
    result[1] = static_cast<BYTE>(value >> 8U);
    result[2] = static_cast<BYTE>(value >> 16U);
}
inline DWORD PixelOf(const PlanarRow& row, int i) {
    return static_cast<DWORD>(row.blue[i]) | static_cast<DWORD>(row.green[i]) << 8U |
           static_cast<DWORD>(row.red[i]) << 16U;
}

void DecodeBgr(const BYTE* source, const PlanarRow& row, int count) {
    DecodePacked<3>(source, row, count);
}
void DecodeBgrx(const BYTE* source, const PlanarRow& row, int count) {
    DecodePacked<4>(source, row, count);
}

// Without byte shuffles, whole words are stored one over the other: each pixel but the last brings a byte too many,
// which the next one overwrites.
void EncodeBgr(const PlanarRow& row, BYTE* __restrict result, int count) {
    const PlanarRow own = row;
    if constexpr (kHasByteShuffle) {
        for (int i = 0; i < count; ++i) {
            result[3 * i] = own.blue[i];
            result[3 * i + 1] = own.green[i];
            result[3 * i + 2] = own.red[i];
        }
        return;
    }
    for (int i = 0; i < count - 1; ++i) {
        StoreDword(result + 3 * i, PixelOf(own, i));
    }
    if (count > 0) {
        StorePixel24(result + 3 * (count - 1), PixelOf(own, count - 1));
    }
}

void EncodeBgrx(const PlanarRow& row, BYTE* __restrict result, int count) {
    const BYTE* __restrict const blue = row.blue;
    const BYTE* __restrict const green = row.green;
    const BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        const DWORD fourth = LoadDword(result + 4 * i) & 0xFF000000U;
        StoreDword(result + 4 * i, fourth | static_cast<DWORD>(red[i]) << 16U | static_cast<DWORD>(green[i]) << 8U |
                                       static_cast<DWORD>(blue[i]));
    }
}

void ClearFourthBytes(BYTE* pixels, int count) {
    for (int i = 0; i < count; ++i) {
        StoreDword(pixels + 4 * i, LoadDword(pixels + 4 * i) & 0x00FFFFFFU);
    }
}

using Bytes16 = BYTE __attribute__((vector_size(16)));

void BgrToBgrx(const BYTE* source, BYTE* result, int count) {
    ForEachPixelVector<kLanes, 24, 32>(source, result, count, [](const BYTE* pixels, BYTE* wide) {
        StoreBytes(wide, reinterpret_cast<Bytes>(LoadPixelInts(pixels)));
    });
}

void BgrxToBgr(const BYTE* source, BYTE* result, int count) {
    ForEachPixelVector<kLanes, 32, 24>(source, result, count, [](const BYTE* pixels, BYTE* narrow) {
        StorePixelInts(narrow, reinterpret_cast<Ints>(LoadBytes(pixels)));
    });
}

// Products of the words of each lane with a factor, shifted.
inline Ints Scaled(Ints words, unsigned factor, unsigned shift) {
    constexpr unsigned kHigh = 16;
    const Words factors = BroadcastWord(static_cast<int>(factor << (kHigh - shift)));
    return reinterpret_cast<Ints>(MultiplyHigh(reinterpret_cast<Words>(words), factors));
}

// Channels are scaled at the upper byte of their words, so that the factor fits.
void Words555ToBgr(const BYTE* source, BYTE* result, int count) {
    static_assert(kWiden5Shift == 8);
    ForEachPixelVector<kWordLanes, 16, 24>(source, result, count, [](const BYTE* words, BYTE* pixels) {
        const Words value = LoadWordsToPair(words);
        const Words upper = BroadcastWord(31 << 8);
        const Words factor = BroadcastWord(kWiden5Factor);
        const Words blue = MultiplyHigh(value << 8 & upper, factor);
        const Words green = MultiplyHigh(value << 3 & upper, factor);
        const Words red = MultiplyHigh(value >> 2 & upper, factor);
        StorePixelInts(pixels, PairLow(blue | green << 8, red));
        StorePixelInts(pixels + 3 * kLanes, PairHigh(blue | green << 8, red));
    });
}

inline Ints LoadPixelsAsWords555(const BYTE* pixels) {
    const Ints value = LoadPixelInts(pixels);
    const Ints blueAndRed = Scaled(value & BroadcastInt(0xFF00FF), kNarrow5Factor, kNarrow5Shift);
    const Ints green = Scaled(value >> 8 & BroadcastInt(0xFF), kNarrow5Factor, kNarrow5Shift);
    const Ints joined =
        MultiplyAddPairs(reinterpret_cast<Words>(blueAndRed), reinterpret_cast<Words>(BroadcastInt(1 << 10 << 16 | 1)));
    return joined | green << 5;
}

void BgrToWords555(const BYTE* source, BYTE* result, int count) {
    ForEachPixelVector<kWordLanes, 24, 16>(source, result, count, [](const BYTE* pixels, BYTE* words) {
        StoreIntsAsWords(words, LoadPixelsAsWords555(pixels), LoadPixelsAsWords555(pixels + 3 * kLanes));
    });
}

inline Bytes16 LoadBytes16(const BYTE* source) {
    Bytes16 bytes;
    __builtin_memcpy(&bytes, source, sizeof bytes);
    return bytes;
}
inline void StoreBytes16(BYTE* result, Bytes16 bytes) {
    __builtin_memcpy(result, &bytes, sizeof bytes);
}

void GreysToBgr(const BYTE* levels, BYTE* result, int count) {
    if constexpr (kHasByteShuffle) {
        ForEachPixelVector<kByteLanes, 8, 24>(levels, result, count, [](const BYTE* source, BYTE* pixels) {
            for (int vector = 0; vector < 3; ++vector) {
                StoreBytes(pixels + vector * kByteLanes, LoadTripled(source, vector));
            }
        });
    } else {
        ForEachPixelVector<1, 8, 24>(levels, result, count,
                                     [](const BYTE* source, BYTE* pixel) { StoreInt(pixel, *source * 0x010101); });
    }
}

void ShiftBits(const BYTE* __restrict source, int shift, BYTE* __restrict result, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        result[i] = static_cast<BYTE>(source[i] << shift | source[i + 1] >> (8 - shift));
    }
}

// Five pixels at a time, with a byte of a sixth one.
void Reverse24(const BYTE* end, BYTE* __restrict result, int count) {
    const BYTE* const last = end - std::ptrdiff_t{3} * count;
    int i = 0;
    if constexpr (kHasByteShuffle) {
        for (; i + 6 <= count; i += 5) {
            Bytes16 bytes = LoadBytes16(end - std::ptrdiff_t{3} * i - 16);
            bytes = __builtin_shufflevector(bytes, bytes, 13, 14, 15, 10, 11, 12, 7, 8, 9, 4, 5, 6, 1, 2, 3, 0);
            __builtin_memcpy(result + std::ptrdiff_t{3} * i, &bytes, sizeof bytes);
        }
    }
    for (; i < count - 1; ++i) {
        StoreDword(result + std::ptrdiff_t{3} * i, LoadDword(end - std::ptrdiff_t{3} * i - 4) >> 8U);
    }
    if (i < count) {
        __builtin_memcpy(result + std::ptrdiff_t{3} * i, last, 3);
    }
}

// Four by four pixels, each in four bytes while they change places. Stores `bytes` of each row: the twelve of its
// pixels, or sixteen where the next ones overwrite the rest.
template <std::size_t kStored>
inline void TurnBlock(const BYTE* source, std::ptrdiff_t sourceStep, BYTE* result, std::ptrdiff_t resultStep) {
    using Dwords = DWORD __attribute__((vector_size(16)));
    const auto load = [=](int i) __attribute__((always_inline)) {
        const Bytes16 bytes = LoadBytes16(source + i * sourceStep);
        return reinterpret_cast<Dwords>(
            __builtin_shufflevector(bytes, bytes, 0, 1, 2, 2, 3, 4, 5, 5, 6, 7, 8, 8, 9, 10, 11, 11));
    };
    const auto store = [=](int k, Dwords column) __attribute__((always_inline)) {
        Bytes16 bytes = reinterpret_cast<Bytes16>(column);
        bytes = __builtin_shufflevector(bytes, bytes, 0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 15, 15, 15, 15);
        __builtin_memcpy(result + k * resultStep, &bytes, kStored);
    };
    const Dwords rows[4] = {load(0), load(1), load(2), load(3)};
    const Dwords low01 = __builtin_shufflevector(rows[0], rows[1], 0, 4, 1, 5);
    const Dwords high01 = __builtin_shufflevector(rows[0], rows[1], 2, 6, 3, 7);
    const Dwords low23 = __builtin_shufflevector(rows[2], rows[3], 0, 4, 1, 5);
    const Dwords high23 = __builtin_shufflevector(rows[2], rows[3], 2, 6, 3, 7);
    store(0, __builtin_shufflevector(low01, low23, 0, 1, 4, 5));
    store(1, __builtin_shufflevector(low01, low23, 2, 3, 6, 7));
    store(2, __builtin_shufflevector(high01, high23, 0, 1, 4, 5));
    store(3, __builtin_shufflevector(high01, high23, 2, 3, 6, 7));
}

void TurnFour24(const BYTE* source, std::ptrdiff_t sourceStep, BYTE* result, std::ptrdiff_t resultStep, int count) {
    int i = 0;
    if constexpr (kHasByteShuffle) {
        for (; i + 6 <= count; i += 4) {
            // Processors do not foresee steps of whole rows, so what comes behind these `count` is asked for meanwhile.
            for (int k = 0; k < 4; ++k) {
                __builtin_prefetch(source + (i + count + k) * sourceStep);
            }
            TurnBlock<16>(source + i * sourceStep, sourceStep, result + std::ptrdiff_t{3} * i, resultStep);
        }
        for (; i + 4 <= count; i += 4) {
            TurnBlock<12>(source + i * sourceStep, sourceStep, result + std::ptrdiff_t{3} * i, resultStep);
        }
    }
    for (; i < count; ++i) {
        for (int k = 0; k < 4; ++k) {
            __builtin_memcpy(result + k * resultStep + std::ptrdiff_t{3} * i, source + i * sourceStep + 3 * k, 3);
        }
    }
}

constexpr PixelKernels kKernels = {{Decode555, Encode555, nullptr, Words555ToBgr, BgrToWords555},
                                   {Decode565, Encode565},
                                   {DecodeBlack, Encode565},
                                   {DecodeBgr, EncodeBgr},
                                   {DecodeBgrx, EncodeBgrx, ClearFourthBytes, BgrxToBgr, BgrToBgrx},
                                   GreysToBgr,
                                   ShiftBits,
                                   Reverse24,
                                   TurnFour24};
