// Compiled once per target, see each_target.h.

struct VectorScale {
    Floats reciprocal;
    Floats limit; // from here on results are clamped, whatever the offset
    Words offset;
    Floats lowest; // of the sums, where they are counted from it
};

inline VectorScale MakeScale(const SumScale& scale, int lowest) {
    return {Broadcast(1.0F / static_cast<float>(scale.divisor)), Broadcast(static_cast<float>(512 * scale.divisor)),
            BroadcastWord(scale.offset), Broadcast(static_cast<float>(lowest))};
}

// The sum divided, truncated toward zero. A half more than the sum, times the reciprocal, is at least half a divisor's
// part away from any whole number, and quotients up to 512 are exact to a hundredth of that.
inline Ints Divide(Floats sum, const VectorScale& scale) {
    const Floats zero = Broadcast(0.0F);
    const Floats limited = Max(Min(sum, scale.limit), zero - scale.limit);
    const Floats half = reinterpret_cast<Floats>(reinterpret_cast<Ints>(Broadcast(0.5F)) |
                                                 (reinterpret_cast<Ints>(limited) & BroadcastInt(-0x7FFFFFFF - 1)));
    return Truncate((limited + half) * scale.reciprocal);
}

// The same address, as one number: else compilers take an index apart for each vector of a step, which takes more
// registers than 32-bit processors have.
template <class Item>
inline const Item* InOneRegister(const Item* address) {
    asm("" : "+r"(address));
    return address;
}

void ConvolveNarrow(const BYTE* const* sources, const LONG* weights, int taps, int lowest, const SumScale& sumScale,
                    int count, BYTE* result) {
    constexpr int kVectors = 4;
    const VectorScale scale = MakeScale(sumScale, lowest);
    Words broadcast[kMaxTaps];
    for (int t = 0; t < taps; ++t) {
        broadcast[t] = BroadcastWord(static_cast<int>(weights[t]));
    }
    for (int i = 0; i < count; i += kVectors * kWordLanes) {
        Words sums[kVectors]; // less the lowest, without sign
        for (Words& sum : sums) {
            sum = BroadcastWord(-lowest);
        }
        for (int t = 0; t < taps; ++t) {
            const BYTE* const source = InOneRegister(sources[t] + i);
            for (int v = 0; v < kVectors; ++v) {
                sums[v] += LoadBytesAsWords(source + v * kWordLanes) * broadcast[t];
            }
        }
        const VectorScale& ready = *InOneRegister(&scale); // not in registers all along
        for (int v = 0; v < kVectors; ++v) {
            const Ints low = Divide(ToFloats(UnpackLow(sums[v])) + ready.lowest, ready);
            const Ints high = Divide(ToFloats(UnpackHigh(sums[v])) + ready.lowest, ready);
            StoreWordsAsBytes(result + i + v * kWordLanes, PackInts(low, high) + ready.offset);
        }
    }
}

void ConvolveWide(const BYTE* const* sources, const LONG* weights, int taps, const SumScale& sumScale, int count,
                  BYTE* result) {
    using Unsigned = DWORD __attribute__((vector_size(sizeof(Ints))));
    constexpr int kVectors = 2;
    const VectorScale scale = MakeScale(sumScale, 0);
    for (int i = 0; i < count; i += kVectors * kWordLanes) {
        Unsigned sums[kVectors][2] = {};
        for (int t = 0; t < taps; ++t) {
            const BYTE* const source = InOneRegister(sources[t] + i);
            const auto weight = reinterpret_cast<Unsigned>(BroadcastInt(static_cast<int>(weights[t])));
            for (int v = 0; v < kVectors; ++v) {
                const Words samples = LoadBytesAsWords(source + v * kWordLanes);
                sums[v][0] += reinterpret_cast<Unsigned>(UnpackLow(samples)) * weight;
                sums[v][1] += reinterpret_cast<Unsigned>(UnpackHigh(samples)) * weight;
            }
        }
        for (int v = 0; v < kVectors; ++v) {
            // Sums beyond 24 bits are rounded as floats, far beyond the limit.
            const Ints low = Divide(ToFloats(reinterpret_cast<Ints>(sums[v][0])), scale);
            const Ints high = Divide(ToFloats(reinterpret_cast<Ints>(sums[v][1])), scale);
            StoreWordsAsBytes(result + i + v * kWordLanes, PackInts(low, high) + scale.offset);
        }
    }
}

constexpr ConvolutionKernels kKernels = {ConvolveNarrow, ConvolveWide};
