// Compiled once per target, see each_target.h.

namespace narrow {
#include "simd/lanes_16_bytes.inl"
} // namespace narrow

#include "simd/word_rows.inl"

// The change of kWordLanes column sums.
template <class Change>
inline void ChangeSums(int count, WORD* sums, Change change) {
    for (int i = 0; i < count; i += kWordLanes) {
        StoreWords(sums + i, LoadWords(sums + i) + change(i));
    }
}

void Slide(const BYTE* added, const BYTE* removed, int count, WORD* sums) {
    if (added != nullptr && removed != nullptr) {
        ChangeSums(count, sums, [=](int i) { return LoadBytesAsWords(added + i) - LoadBytesAsWords(removed + i); });
    } else if (added != nullptr) {
        ChangeSums(count, sums, [=](int i) { return LoadBytesAsWords(added + i); });
    } else if (removed != nullptr) {
        ChangeSums(count, sums, [=](int i) { return BroadcastWord(0) - LoadBytesAsWords(removed + i); });
    }
}

inline Words BoxSums(const WORD* sums, int radius, int step) {
    Words box = LoadWords(sums);
    for (int k = 1; k <= radius; ++k) {
        box += LoadWords(sums - std::ptrdiff_t{k} * step) + LoadWords(sums + std::ptrdiff_t{k} * step);
    }
    return box;
}

// A half more than the sum, times the reciprocal, is at least half a box pixel's part away from any whole number, which
// is ten times what the rounding of quotients below 256 can move it.
inline Ints Mean(Ints sums, Floats reciprocal) {
    return Truncate((ToFloats(sums) + Broadcast(0.5F)) * reciprocal);
}

// Division by a product and a shift; see FixedReciprocal.
template <class Boxes>
inline void DivideFixed(const FixedReciprocal& reciprocal, Boxes boxes, int count, BYTE* result) {
    const Words factor = BroadcastWord(reciprocal.factor);
    for (int i = 0; i < count; i += kWordLanes) {
        StoreWordsAsBytes(result + i, MultiplyHigh(boxes(i), factor) >> static_cast<WORD>(reciprocal.shift));
    }
}

void NarrowMeans(const WORD* sums, int radius, int step, int boxPixels, int count, BYTE* result) {
    const FixedReciprocal fixed = MakeFixedReciprocal(boxPixels, 255 * boxPixels);
    if (fixed.exact) {
        if (radius == 1) { // known while compiling, so that nothing is counted
            DivideFixed(
                fixed, [=](int i) { return BoxSums(sums + i, 1, step); }, count, result);
        } else {
            DivideFixed(
                fixed, [=](int i) { return BoxSums(sums + i, radius, step); }, count, result);
        }
        return;
    }
    const Floats reciprocal = Broadcast(1.0F / static_cast<float>(boxPixels));
    for (int i = 0; i < count; i += kWordLanes) {
        const Words box = BoxSums(sums + i, radius, step);
        StoreWordsAsBytes(result + i, PackInts(Mean(UnpackLow(box), reciprocal), Mean(UnpackHigh(box), reciprocal)));
    }
}

// Three channels side by side are summed in one register, whose fourth lane the next store overwrites.
void RunningSums(const WORD* __restrict values, int step, int count, DWORD* __restrict sums) {
    if (step == 3) {
        auto sum = narrow::BroadcastInt(0);
        __builtin_memcpy(sums, &sum, sizeof sum);
        for (int i = 0; i < count; i += 3) {
            sum += narrow::UnpackLow(narrow::LoadFourWords(values + i));
            __builtin_memcpy(sums + 3 + i, &sum, sizeof sum);
        }
        return;
    }
    DWORD sum = 0;
    sums[0] = 0;
    for (int i = 0; i < count; ++i) {
        sum += values[i];
        sums[1 + i] = sum;
    }
}

using UnsignedInts = unsigned __attribute__((vector_size(sizeof(Ints))));

void WideMeans(const DWORD* sums, int distance, int boxPixels, int count, BYTE* result) {
    const Floats reciprocal = Broadcast(1.0F / static_cast<float>(boxPixels));
    for (int i = 0; i < count; i += kLanes) {
        UnsignedInts begin; // sums of long rows pass 2^31
        UnsignedInts end;
        __builtin_memcpy(&begin, sums + i, sizeof begin);
        __builtin_memcpy(&end, sums + i + distance, sizeof end);
        StoreFloatsAsBytes(result + i, (ToFloats(reinterpret_cast<Ints>(end - begin)) + Broadcast(0.5F)) * reciprocal);
    }
}

constexpr BoxMeanKernels kKernels = {Slide, NarrowMeans, RunningSums, WideMeans};
