// Compiled once per target, see each_target.h.

struct Slopes {
    Words first;
    Words second;
};

// Single precision gives what exact numbers would: sums of squares s stay below 2^24. Where gain * sqrt(s) is not the
// whole number n, its square, a whole number too, is at least 1 away from n * n, so that the product is at least 1/513
// away from n while n is at most 256; two roundings move it by less than 1/30000 there. Where it is whole, so is
// sqrt(s) and nothing is rounded.
inline Words Strength(Slopes slopes, Floats gain) {
    const Ints low = Truncate(SquareRoot(ToFloats(LowSquareSums(slopes.first, slopes.second))) * gain);
    const Ints high = Truncate(SquareRoot(ToFloats(HighSquareSums(slopes.first, slopes.second))) * gain);
    return PackInts(low, high);
}

template <class SlopesAt>
inline void Strengths(float gain, int count, BYTE* result, SlopesAt slopesAt) {
    const Floats factor = Broadcast(gain);
    for (int i = 0; i < count; i += kWordLanes) {
        StoreWordsAsBytes(result + i, Strength(slopesAt(i), factor));
    }
}

void Difference(const BYTE* below, const BYTE* own, const BYTE* /*above*/, float gain, int count, BYTE* result) {
    Strengths(gain, count, result, [=](int i) {
        const Words centre = LoadBytesAsWords(own + i);
        return Slopes{centre - LoadBytesAsWords(own + i + 1), centre - LoadBytesAsWords(below + i)};
    });
}

void Roberts(const BYTE* below, const BYTE* own, const BYTE* /*above*/, float gain, int count, BYTE* result) {
    Strengths(gain, count, result, [=](int i) {
        return Slopes{LoadBytesAsWords(own + i) - LoadBytesAsWords(below + i + 1),
                      LoadBytesAsWords(own + i + 1) - LoadBytesAsWords(below + i)};
    });
}

void Sobel(const BYTE* below, const BYTE* own, const BYTE* above, float gain, int count, BYTE* result) {
    Strengths(gain, count, result, [=](int i) {
        const Words belowLeft = LoadBytesAsWords(below + i - 1);
        const Words belowRight = LoadBytesAsWords(below + i + 1);
        const Words aboveLeft = LoadBytesAsWords(above + i - 1);
        const Words aboveRight = LoadBytesAsWords(above + i + 1);
        const Words across = LoadBytesAsWords(own + i + 1) - LoadBytesAsWords(own + i - 1);
        const Words along = LoadBytesAsWords(below + i) - LoadBytesAsWords(above + i);
        return Slopes{aboveRight - aboveLeft + across + across + belowRight - belowLeft,
                      belowLeft - aboveLeft + along + along + belowRight - aboveRight};
    });
}

constexpr OutlineKernels kKernels = {Difference, Roberts, Sobel};
