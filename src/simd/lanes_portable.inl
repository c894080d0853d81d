// The lanes of a 16-byte register without the instructions of any processor, in the vector types of the compiler;
// lanes_x86.inl says what they are. Operations that those types lack are done lane by lane.

constexpr int kLanes = 4;
using Floats = float __attribute__((vector_size(16)));
using Ints = int __attribute__((vector_size(16)));

// Each lane of the result from those of a and b.
template <class Result, class Vector, class Operation>
inline Result ByLane(Vector a, Vector b, Operation operation) {
    Result result;
    for (int lane = 0; lane != static_cast<int>(sizeof(Vector) / sizeof a[0]); ++lane) {
        result[lane] = operation(a[lane], b[lane]);
    }
    return result;
}

inline Floats Broadcast(float value) {
    return Floats{value, value, value, value};
}
inline Ints BroadcastInt(int value) {
    return Ints{value, value, value, value};
}
inline Floats LoadBytesAsFloats(const BYTE* bytes) {
    return Floats{static_cast<float>(bytes[0]), static_cast<float>(bytes[1]), static_cast<float>(bytes[2]),
                  static_cast<float>(bytes[3])};
}
inline void StoreIntsAsBytes(BYTE* bytes, Ints value) {
    for (int lane = 0; lane != kLanes; ++lane) {
        bytes[lane] = static_cast<BYTE>(std::clamp(value[lane], 0, 255));
    }
}
inline void StoreIntsAsBytes(BYTE* bytes, Ints first, Ints second) {
    StoreIntsAsBytes(bytes, first);
    StoreIntsAsBytes(bytes + kLanes, second);
}
inline Ints Truncate(Floats value) {
    return __builtin_convertvector(value, Ints);
}
inline Floats ToFloats(Ints value) {
    return __builtin_convertvector(value, Floats);
}
inline Floats Min(Floats a, Floats b) {
    return a < b ? a : b;
}
inline Floats Max(Floats a, Floats b) {
    return a > b ? a : b;
}
inline Floats SquareRoot(Floats value) {
    return Floats{__builtin_sqrtf(value[0]), __builtin_sqrtf(value[1]), __builtin_sqrtf(value[2]),
                  __builtin_sqrtf(value[3])};
}
inline unsigned MoveMask(Ints value) {
    unsigned bits = 0;
    for (int lane = 0; lane != kLanes; ++lane) {
        bits |= static_cast<unsigned>(value[lane]) >> 31U << lane;
    }
    return bits;
}
inline void StoreFloatsAsBytes(BYTE* bytes, Floats value) {
    StoreIntsAsBytes(bytes, Truncate(Max(Min(value, Broadcast(255.0F)), Broadcast(0.0F))));
}

// --- Words: 2 * kLanes lanes of 16 bits ------------------------------------------------------------------------------

constexpr int kWordLanes = 8;
using Words = WORD __attribute__((vector_size(16)));
using SignedWords = short __attribute__((vector_size(16)));

inline Words BroadcastWord(int value) {
    return Words{} + static_cast<WORD>(value);
}
inline Words LoadBytesAsWords(const BYTE* bytes) {
    return Words{bytes[0], bytes[1], bytes[2], bytes[3], bytes[4], bytes[5], bytes[6], bytes[7]};
}
inline Words Min(Words a, Words b) {
    return reinterpret_cast<SignedWords>(a) < reinterpret_cast<SignedWords>(b) ? a : b;
}
inline Words Max(Words a, Words b) {
    return reinterpret_cast<SignedWords>(a) > reinterpret_cast<SignedWords>(b) ? a : b;
}
inline void StoreWordsAsBytes(BYTE* bytes, Words words) {
    const Words clamped = Min(Max(words, BroadcastWord(0)), BroadcastWord(255));
    for (int lane = 0; lane != kWordLanes; ++lane) {
        bytes[lane] = static_cast<BYTE>(clamped[lane]);
    }
}
inline Words LoadWordsToPair(const BYTE* words) {
    Words loaded;
    __builtin_memcpy(&loaded, words, sizeof loaded);
    return loaded;
}
inline Ints UnpackLow(Words words) {
    return Ints{words[0], words[1], words[2], words[3]};
}
inline Ints UnpackHigh(Words words) {
    return Ints{words[4], words[5], words[6], words[7]};
}
inline Ints PairLow(Words low, Words high) {
    return UnpackLow(low) | UnpackLow(high) << 16;
}
inline Ints PairHigh(Words low, Words high) {
    return UnpackHigh(low) | UnpackHigh(high) << 16;
}
inline Words PackInts(Ints low, Ints high) {
    Words result;
    for (int lane = 0; lane != kLanes; ++lane) {
        result[lane] = static_cast<WORD>(std::clamp(low[lane], -0x8000, 0x7FFF));
        result[kLanes + lane] = static_cast<WORD>(std::clamp(high[lane], -0x8000, 0x7FFF));
    }
    return result;
}
inline void StoreIntsAsWords(BYTE* words, Ints first, Ints second) {
    const Words packed = PackInts(first, second);
    __builtin_memcpy(words, &packed, sizeof packed);
}
inline Words MultiplyHigh(Words a, Words b) {
    return ByLane<Words>(a, b, [](WORD x, WORD y) { return static_cast<WORD>(static_cast<unsigned>(x) * y >> 16U); });
}
inline Ints SignedLow(Words words) {
    const auto value = reinterpret_cast<SignedWords>(words);
    return Ints{value[0], value[1], value[2], value[3]};
}
inline Ints SignedHigh(Words words) {
    const auto value = reinterpret_cast<SignedWords>(words);
    return Ints{value[4], value[5], value[6], value[7]};
}
inline Ints LowSquareSums(Words a, Words b) {
    return SignedLow(a) * SignedLow(a) + SignedLow(b) * SignedLow(b);
}
inline Ints HighSquareSums(Words a, Words b) {
    return SignedHigh(a) * SignedHigh(a) + SignedHigh(b) * SignedHigh(b);
}
inline Ints MultiplyAddPairs(Words a, Words b) {
    const auto x = reinterpret_cast<SignedWords>(a);
    const auto y = reinterpret_cast<SignedWords>(b);
    Ints result;
    for (int lane = 0; lane != kLanes; ++lane) {
        result[lane] = x[2 * lane] * y[2 * lane] + x[2 * lane + 1] * y[2 * lane + 1];
    }
    return result;
}

// --- Bytes: 4 * kLanes lanes of 8 bits -------------------------------------------------------------------------------

constexpr int kByteLanes = 16;
using Bytes = BYTE __attribute__((vector_size(16)));

inline Bytes BroadcastByte(int value) {
    return Bytes{} + static_cast<BYTE>(value);
}
inline Bytes LoadBytes(const BYTE* bytes) {
    Bytes result;
    __builtin_memcpy(&result, bytes, sizeof result);
    return result;
}
inline void StoreBytes(BYTE* bytes, Bytes value) {
    __builtin_memcpy(bytes, &value, sizeof value);
}
inline Bytes Min(Bytes a, Bytes b) {
    return a < b ? a : b;
}
inline Bytes Max(Bytes a, Bytes b) {
    return a > b ? a : b;
}
inline Bytes AddSaturated(Bytes a, Bytes b) {
    const Bytes sum = a + b;
    return sum < a ? BroadcastByte(255) : sum;
}
inline Bytes Mean(Bytes a, Bytes b) {
    return (a | b) - ((a ^ b) >> 1);
}
inline Bytes SubtractSaturated(Bytes a, Bytes b) {
    return a > b ? a - b : Bytes{};
}
inline Bytes LoadPixels24(const BYTE* pixels) {
    return LoadBytes(pixels);
}
inline void StorePixels24(BYTE* pixels, Bytes value) {
    StoreBytes(pixels, value);
}
inline Bytes LoadShuffle(const BYTE (&places)[16]) {
    return LoadBytes(places);
}

constexpr bool kHasByteShuffle = false;

#include "simd/shuffle_bytes.inl"

// --- Doubles: half of kLanes lanes, whose whole numbers are the first lanes of 16 bytes
// -------------------------------

constexpr int kDoubleLanes = 2;
using Doubles = double __attribute__((vector_size(16)));
using FewInts = Ints;

inline Doubles BroadcastDouble(double value) {
    return Doubles{value, value};
}
inline Doubles SquareRoot(Doubles value) {
    return Doubles{__builtin_sqrt(value[0]), __builtin_sqrt(value[1])};
}
inline FewInts TruncateDoubles(Doubles value) {
    return FewInts{static_cast<int>(value[0]), static_cast<int>(value[1])};
}
inline void StoreFewInts(int* ints, FewInts value) {
    __builtin_memcpy(ints, &value, kDoubleLanes * sizeof *ints);
}

// --- One pixel: four words -------------------------------------------------------------------------------------------

inline Words LoadFourWords(const WORD* words) {
    return Words{words[0], words[1], words[2], words[3]};
}
inline Words LoadFourBytesAsWords(const BYTE* bytes) {
    return Words{bytes[0], bytes[1], bytes[2], bytes[3]};
}
inline void StoreFourWordsAsBytes(BYTE* bytes, Words words) {
    const Words clamped = Min(Max(words, BroadcastWord(0)), BroadcastWord(255));
    for (int lane = 0; lane != 4; ++lane) {
        bytes[lane] = static_cast<BYTE>(clamped[lane]);
    }
}
