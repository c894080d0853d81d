// Bytes of pixels spread over the three bytes of each. Included by kernels after their lanes.

// Where each byte of the three vectors of kByteLanes pixels finds its pixel among 16: of those of two times 16, the
// first ones, both, and the last ones.
struct TripledPlaces {
    BYTE places[3][kByteLanes];

    constexpr TripledPlaces() : places() {
        for (int i = 0; i != 3 * kByteLanes; ++i) {
            places[i / kByteLanes][i % kByteLanes] = static_cast<BYTE>(i / 3 % 16);
        }
    }
};

// Of kByteLanes bytes, each three times, a vector of the three.
inline Bytes LoadTripled(const BYTE* bytes, int vector) {
    static constexpr TripledPlaces kTripled;
    const auto some = [=](int first) __attribute__((always_inline)) {
        return LoadShuffle(reinterpret_cast<const BYTE(&)[16]>(bytes[first]));
    };
    const Bytes from = vector == 0 ? some(0) : vector == 1 ? LoadBytes(bytes) : some(kByteLanes - 16);
    return ShuffleBytes(from, LoadBytes(kTripled.places[vector]));
}
