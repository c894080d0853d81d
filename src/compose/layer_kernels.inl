// Compiled once per target, see each_target.h.

constexpr int kBlockBytes = 96; // whole pixels and whole vectors
constexpr int kBlockPixels = kBlockBytes / 3;

// For each byte of a block, which of the bytes around it belong to other pixels and do not matter to its own: 0xFF.
struct OtherPixels {
    BYTE twoBefore[kBlockBytes];
    BYTE before[kBlockBytes];
    BYTE after[kBlockBytes];
    BYTE twoAfter[kBlockBytes];
};

constexpr OtherPixels FindOtherPixels() {
    OtherPixels other = {};
    for (int k = 0; k != kBlockBytes; ++k) {
        other.twoBefore[k] = k % 3 == 2 ? 0 : 0xFF;
        other.before[k] = k % 3 == 0 ? 0xFF : 0;
        other.after[k] = k % 3 == 2 ? 0xFF : 0;
        other.twoAfter[k] = k % 3 == 0 ? 0 : 0xFF;
    }
    return other;
}
constexpr OtherPixels kOther = FindOtherPixels();

// What truncating (255 - a) * base / 255 + a * layer / 255 in double precision gives: the quotient of the whole sum.
inline BYTE Blended(BYTE base, BYTE layer, BYTE opacity) {
    const auto sum = static_cast<WORD>(base * (255 - opacity) + layer * opacity);
    return static_cast<BYTE>(static_cast<WORD>(sum + 1 + (sum >> 8)) >> 8); // sum / 255, exact up to 255 * 255
}

inline BYTE Equal(BYTE a, BYTE b) {
    return a == b ? 0xFF : 0;
}

void BlendPixel(const LayerBlend& blend, const BYTE* layer, BYTE* result) {
    const BYTE* const clear = blend.transparent;
    if (layer[0] == clear[0] && layer[1] == clear[1] && layer[2] == clear[2]) {
        return;
    }
    for (int k = 0; k != 3; ++k) {
        result[k] = Blended(result[k], layer[k], blend.opacity);
    }
}

// A byte is transparent when it and the others of its pixel equal the key. All bytes are looked at alike, each with the
// two before and the two after it, so that vectors need no whole pixels; `clear` is the key over and over.
void BlendBlock(const BYTE* clear, BYTE opacity, const BYTE* __restrict layer, BYTE* __restrict result) {
    for (int k = 0; k < kBlockBytes; ++k) {
        const BYTE transparent =
            static_cast<BYTE>(Equal(layer[k], clear[k]) & (Equal(layer[k - 2], clear[k - 2]) | kOther.twoBefore[k]) &
                              (Equal(layer[k - 1], clear[k - 1]) | kOther.before[k]) &
                              (Equal(layer[k + 1], clear[k + 1]) | kOther.after[k]) &
                              (Equal(layer[k + 2], clear[k + 2]) | kOther.twoAfter[k]));
        const BYTE blended = Blended(result[k], layer[k], opacity);
        result[k] = static_cast<BYTE>((result[k] & transparent) | (blended & ~transparent));
    }
}

// Blocks lie at least a pixel from both ends, because they look at the bytes around them.
void Blend24(const LayerBlend& given, const BYTE* __restrict layer, BYTE* __restrict result, int count) {
    const LayerBlend blend = given; // which storing bytes cannot change
    BYTE clear[kBlockBytes + 6];
    for (int k = 0; k != kBlockBytes + 6; ++k) {
        clear[k] = blend.transparent[k % 3];
    }
    int i = 0;
    if (count > 0) {
        BlendPixel(blend, layer, result);
        ++i;
    }
    for (; i + kBlockPixels < count; i += kBlockPixels) {
        BlendBlock(clear + 3, blend.opacity, layer + 3 * i, result + 3 * i);
    }
    for (; i < count; ++i) {
        BlendPixel(blend, layer + 3 * i, result + 3 * i);
    }
}

void BlendLevels(BYTE opacity, const BYTE* __restrict layer, BYTE* __restrict result, int count) {
    for (int i = 0; i < count; ++i) {
        result[i] = Blended(result[i], layer[i], opacity);
    }
}

constexpr LayerKernels kKernels = {Blend24, BlendLevels};
