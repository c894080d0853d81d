// Compiled once per target, see each_target.h.

#include "simd/packed_pixels.inl"

// What truncating (255 - a) * base / 255 + a * layer / 255 in double precision gives: the quotient of the whole sum.
inline BYTE Blended(BYTE base, BYTE layer, BYTE opacity) {
    return static_cast<BYTE>((base * (255 - opacity) + layer * opacity) / 255);
}

inline void BlendVector(BYTE opacity, const BYTE* layer, BYTE* result) {
    const Words sum =
        LoadBytesAsWords(result) * BroadcastWord(255 - opacity) + LoadBytesAsWords(layer) * BroadcastWord(opacity);
    StoreWordsAsBytes(result, MultiplyHigh(sum, BroadcastWord(0x8081)) >> 7); // sum / 255, exact for 16 bits
}

void BlendLevels(BYTE opacity, const BYTE* layer, BYTE* result, int count) {
    int i = 0;
    for (; i + kWordLanes <= count; i += kWordLanes) {
        BlendVector(opacity, layer + i, result + i);
    }
    for (; i < count; ++i) {
        result[i] = Blended(result[i], layer[i], opacity);
    }
}

constexpr int kBlockPixels = 32;
constexpr int kBlockBytes = kBlockPixels * 3; // whole vectors

inline void BlendBlock(BYTE opacity, const BYTE* layer, BYTE* result) {
    for (int k = 0; k < kBlockBytes; k += kWordLanes) {
        BlendVector(opacity, layer + k, result + k);
    }
}

// All bits of the pixels that are transparent.
inline Ints Transparent(const BYTE* layer, Ints clear) {
    return reinterpret_cast<Ints>(LoadPixelInts(layer) == clear);
}

// Where some pixels of a block are transparent, and others are not.
inline void BlendOpaque(Ints clear, BYTE opacity, const BYTE* layer, BYTE* result) {
    BYTE kept[kBlockBytes + 3 * kPixelsBeyond];
    BYTE blended[kBlockBytes];
    for (int i = 0; i < kBlockPixels; i += kLanes) {
        StorePixelInts(kept + 3 * i, Transparent(layer + 3 * i, clear));
    }
    __builtin_memcpy(blended, result, sizeof blended);
    BlendBlock(opacity, layer, blended);
    for (int k = 0; k < kBlockBytes; k += kByteLanes) {
        const Bytes mask = LoadBytes(kept + k);
        StoreBytes(result + k, (LoadBytes(result + k) & mask) | (LoadBytes(blended + k) & ~mask));
    }
}

// Most blocks hold no transparent pixel, or nothing else.
inline void LayBlock(Ints clear, BYTE opacity, const BYTE* layer, BYTE* result) {
    Ints any = BroadcastInt(0);
    Ints all = BroadcastInt(-1);
    for (int i = 0; i < kBlockPixels; i += kLanes) {
        const Ints transparent = Transparent(layer + 3 * i, clear);
        any |= transparent;
        all &= transparent;
    }
    if (MoveMask(any) == 0) {
        BlendBlock(opacity, layer, result);
    } else if (MoveMask(~all) != 0) {
        BlendOpaque(clear, opacity, layer, result);
    }
}

// The last block is laid in a place of its own.
void Blend24(const LayerBlend& blend, const BYTE* layer, BYTE* result, int count) {
    const BYTE(&colour)[3] = blend.transparent;
    const Ints clear = BroadcastInt(colour[0] | colour[1] << 8 | colour[2] << 16);
    const BYTE opacity = blend.opacity;
    for (; count >= kBlockPixels + kPixelsBeyond; count -= kBlockPixels) {
        LayBlock(clear, opacity, layer, result);
        layer += kBlockBytes;
        result += kBlockBytes;
    }
    while (count > 0) {
        const std::size_t rest = BytesOf(std::min(kBlockPixels, count), 24);
        BYTE layers[kBlockBytes + 3 * kPixelsBeyond] = {};
        BYTE results[kBlockBytes] = {};
        __builtin_memcpy(layers, layer, rest);
        __builtin_memcpy(results, result, rest);
        LayBlock(clear, opacity, layers, results);
        __builtin_memcpy(result, results, rest);
        layer += kBlockBytes;
        result += kBlockBytes;
        count -= kBlockPixels;
    }
}

constexpr LayerKernels kKernels = {Blend24, BlendLevels};
