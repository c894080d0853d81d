// Compiled once per target, see pixel_kernels.cpp. Products fit 16 bits, so that eight or sixteen pixels fit a
// register.

// The divisions by 31, 63 and 255, as a product and a shift; proved for every value in pixel_kernels.cpp.
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

void Decode16(const ChannelMasks& masks, const BYTE* __restrict source, const PlanarRow& row, int count) {
    BYTE* __restrict const blue = row.blue;
    BYTE* __restrict const green = row.green;
    BYTE* __restrict const red = row.red;
    const unsigned blueMask = masks.blue & 0xFFU;
    const unsigned greenMask = (masks.green >> 5U) & 0xFFU;
    if (masks.Is555()) {
        for (int i = 0; i < count; ++i) {
            const WORD word = LoadWord(source + 2 * i);
            blue[i] = static_cast<BYTE>(FastWiden5(word & blueMask));
            green[i] = static_cast<BYTE>(FastWiden5((word >> 5U) & greenMask));
            red[i] = static_cast<BYTE>(FastWiden5((word >> 10U) & 31U));
        }
        return;
    }
    const unsigned redMask = masks.red >> 11U;
    for (int i = 0; i < count; ++i) {
        const WORD word = LoadWord(source + 2 * i);
        blue[i] = static_cast<BYTE>(FastWiden5(word & blueMask));
        green[i] = static_cast<BYTE>(FastWiden6((word >> 5U) & greenMask));
        red[i] = static_cast<BYTE>(FastWiden5((word >> 11U) & redMask));
    }
}

void Encode16(const ChannelMasks& masks, const PlanarRow& row, BYTE* __restrict result, int count) {
    const BYTE* __restrict const blue = row.blue;
    const BYTE* __restrict const green = row.green;
    const BYTE* __restrict const red = row.red;
    if (masks.Is555()) {
        for (int i = 0; i < count; ++i) {
            StoreWord(result + 2 * i, static_cast<unsigned>(FastNarrow5(red[i]) << 10 | FastNarrow5(green[i]) << 5 |
                                                            FastNarrow5(blue[i])));
        }
        return;
    }
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

template <int kBytes>
inline void EncodePacked(const PlanarRow& row, BYTE* __restrict result, int count) {
    const BYTE* __restrict const blue = row.blue;
    const BYTE* __restrict const green = row.green;
    const BYTE* __restrict const red = row.red;
    for (int i = 0; i < count; ++i) {
        result[kBytes * i] = blue[i];
        result[kBytes * i + 1] = green[i];
        result[kBytes * i + 2] = red[i];
    }
}

void Decode24(const ChannelMasks& /*masks*/, const BYTE* source, const PlanarRow& row, int count) {
    DecodePacked<3>(source, row, count);
}
void Decode32(const ChannelMasks& /*masks*/, const BYTE* source, const PlanarRow& row, int count) {
    DecodePacked<4>(source, row, count);
}
void Encode24(const ChannelMasks& /*masks*/, const PlanarRow& row, BYTE* result, int count) {
    EncodePacked<3>(row, result, count);
}
void Encode32(const ChannelMasks& /*masks*/, const PlanarRow& row, BYTE* result, int count) {
    EncodePacked<4>(row, result, count);
}

void Widen24(const BYTE* __restrict source, BYTE* __restrict result, int count) {
    for (int i = 0; i < count; ++i) {
        result[4 * i] = source[3 * i];
        result[4 * i + 1] = source[3 * i + 1];
        result[4 * i + 2] = source[3 * i + 2];
        result[4 * i + 3] = 0;
    }
}

void Narrow32(const BYTE* __restrict source, BYTE* __restrict result, int count) {
    for (int i = 0; i < count; ++i) {
        result[3 * i] = source[4 * i];
        result[3 * i + 1] = source[4 * i + 1];
        result[3 * i + 2] = source[4 * i + 2];
    }
}

constexpr PixelKernels kKernels = {Decode16, Decode24, Decode32, Encode16, Encode24, Encode32, Widen24, Narrow32};
