// Packed 24-bit pixels, one in each lane of Ints. Included by kernels after their lanes.

inline int LoadInt(const BYTE* bytes) {
    int value;
    __builtin_memcpy(&value, bytes, sizeof value);
    return value;
}
inline void StoreInt(BYTE* bytes, int value) {
    __builtin_memcpy(bytes, &value, sizeof value);
}

constexpr int kPixelsBeyond = 2; // that the two functions read or write behind the last one

// kLanes pixels, blue in the lowest byte of a lane, the highest byte 0.
inline Ints LoadPixelInts(const BYTE* pixels) {
    if constexpr (kHasByteShuffle) {
        constexpr BYTE kNone = 0xFF;
        constexpr BYTE kPlaces[16] = {0, 1, 2, kNone, 3, 4, 5, kNone, 6, 7, 8, kNone, 9, 10, 11, kNone};
        return reinterpret_cast<Ints>(ShuffleBytes(LoadPixels24(pixels), LoadShuffle(kPlaces)));
    }
    Ints result = {};
    for (int lane = 0; lane < kLanes; ++lane) {
        result[lane] = LoadInt(pixels + 3 * lane);
    }
    return result & BroadcastInt(0xFFFFFF);
}

// And back; the highest bytes do not count.
inline void StorePixelInts(BYTE* pixels, Ints value) {
    if constexpr (kHasByteShuffle) {
        constexpr BYTE kPlaces[16] = {0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, 12, 13, 14, 15};
        StorePixels24(pixels, ShuffleBytes(reinterpret_cast<Bytes>(value), LoadShuffle(kPlaces)));
        return;
    }
    for (int lane = 0; lane < kLanes; ++lane) {
        StoreInt(pixels + 3 * lane, value[lane]);
    }
}

constexpr std::size_t BytesOf(int pixels, int bits) {
    return (static_cast<std::size_t>(pixels) * static_cast<std::size_t>(bits) + 7) / 8;
}

// Runs step(source, result) for kPixels pixels after kPixels pixels, of so many bits each. Steps may go beyond their
// pixels as far as the functions above; where no pixels are left to go to, they get buffers.
template <int kPixels, int kSourceBits, int kResultBits, class Step>
inline void ForEachPixelVector(const BYTE* source, BYTE* result, int count, Step step) {
    constexpr int kRoom = kPixels + kPixelsBeyond;
    while (count >= kRoom) {
        step(source, result);
        source += BytesOf(kPixels, kSourceBits);
        result += BytesOf(kPixels, kResultBits);
        count -= kPixels;
    }
    const auto stepInBuffers = [=](const BYTE* pixels, BYTE* changed, int rest) __attribute__((always_inline)) {
        BYTE sources[BytesOf(kRoom, kSourceBits)] = {};
        BYTE results[BytesOf(kRoom, kResultBits)];
        __builtin_memcpy(sources, pixels, BytesOf(rest, kSourceBits));
        step(sources, results);
        __builtin_memcpy(changed, results, BytesOf(rest, kResultBits));
    };
    if (count >= kPixels) { // copied by so many bytes that the compiler knows them
        stepInBuffers(source, result, kPixels);
        source += BytesOf(kPixels, kSourceBits);
        result += BytesOf(kPixels, kResultBits);
        count -= kPixels;
    }
    if (count > 0) {
        stepInBuffers(source, result, count);
    }
}
