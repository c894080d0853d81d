// Compiled once per target, see each_target.h. All arithmetic is in single precision in the order written: it decides
// the results.

namespace narrow {
#include "simd/lanes_16_bytes.inl"
} // namespace narrow

using Pixel = int __attribute__((vector_size(16)));
using PixelOfFloats = float __attribute__((vector_size(16)));
using PixelOfBytes = BYTE __attribute__((vector_size(4)));

void WidenRow(const BYTE* __restrict row, std::uint32_t* __restrict sums, int count) {
    for (int i = 0; i < count; ++i) {
        sums[i] = row[i];
    }
}

template <class Sum>
void AddRow(const BYTE* __restrict row, Sum* __restrict sums, int count) {
    for (int i = 0; i < count; ++i) {
        sums[i] = static_cast<Sum>(sums[i] + row[i]);
    }
}

void Average(const double* __restrict sums, const int* __restrict columns, int rows, float* __restrict result,
             int count) {
    const auto height = static_cast<float>(rows);
    for (int i = 0; i < count; ++i) {
        const float mean = static_cast<float>(sums[i]) / (static_cast<float>(columns[i]) * height) + 0.5F;
        result[i] = static_cast<float>(static_cast<int>(mean));
    }
}

// A pixel's channels side by side; lanes beyond them hold what is not used.
inline Pixel LoadPixel(const std::uint32_t* sums) {
    Pixel result;
    __builtin_memcpy(&result, sums, sizeof result);
    return result;
}

template <int kStep>
void AverageGroups(const std::uint32_t* __restrict sums, const PixelGroups& groups, int rows, BYTE* __restrict result) {
    const int* __restrict const first = groups.first;
    const int* __restrict const columns = groups.columns;
    const auto height = static_cast<float>(rows);
    for (int i = 0; i < groups.count; ++i) {
        const std::uint32_t* const from = sums + std::ptrdiff_t{first[i]} * kStep;
        Pixel total = LoadPixel(from);
        for (int k = 1; k < columns[i]; ++k) {
            total += LoadPixel(from + std::ptrdiff_t{k} * kStep);
        }
        const float size = static_cast<float>(columns[i]) * height;
        const PixelOfFloats mean =
            __builtin_convertvector(total, PixelOfFloats) / PixelOfFloats{size, size, size, size} + 0.5F;
        const auto bytes = __builtin_convertvector(__builtin_convertvector(mean, Pixel), PixelOfBytes);
        __builtin_memcpy(result + std::ptrdiff_t{i} * kStep, &bytes, sizeof bytes);
    }
}

// Groups of one column and of two, without a branch: one column is taken twice, for (2 s + n) / 2 n and (s + n / 2) / n
// are the same, both rounded down.
template <int kStep>
inline void AverageUpToTwo(const WORD* __restrict sums, const PixelGroups& groups, const FixedMean& mean,
                           BYTE* __restrict result) {
    const int* __restrict const first = groups.first;
    const int* __restrict const columns = groups.columns;
    const int count = groups.count;
    const narrow::Words half = narrow::BroadcastWord(mean.half);
    const narrow::Words factor = narrow::BroadcastWord(mean.factor);
    const int shift = mean.shift;
    for (int i = 0; i < count; ++i) {
        const WORD* const from = sums + std::ptrdiff_t{first[i]} * kStep;
        const narrow::Words total =
            narrow::LoadFourWords(from) + narrow::LoadFourWords(from + std::ptrdiff_t{columns[i] - 1} * kStep);
        narrow::StoreFourWordsAsBytes(result + std::ptrdiff_t{i} * kStep,
                                      narrow::MultiplyHigh(total + half, factor) >> shift);
    }
}

template <int kStep>
void AverageSmall(const WORD* __restrict sums, const PixelGroups& groups, const FixedMean* __restrict means,
                  BYTE* __restrict result) {
    if (groups.mostColumns == 2) {
        AverageUpToTwo<kStep>(sums, groups, means[2], result);
        return;
    }
    const int* __restrict const first = groups.first;
    const int* __restrict const columns = groups.columns;
    const int count = groups.count;
    for (int i = 0; i < count; ++i) {
        const WORD* const from = sums + std::ptrdiff_t{first[i]} * kStep;
        narrow::Words total = narrow::LoadFourWords(from);
        for (int k = 1; k < columns[i]; ++k) {
            total += narrow::LoadFourWords(from + std::ptrdiff_t{k} * kStep);
        }
        const FixedMean& mean = means[columns[i]];
        const narrow::Words product =
            narrow::MultiplyHigh(total + narrow::BroadcastWord(mean.half), narrow::BroadcastWord(mean.factor));
        narrow::StoreFourWordsAsBytes(result + std::ptrdiff_t{i} * kStep, product >> mean.shift);
    }
}

// (a + b + c + d + 2) / 4: the mean of two means has a half too much where one of them was rounded up and their sum is
// rounded up too.
inline narrow::Bytes MeanOfFour(narrow::Bytes a, narrow::Bytes b, narrow::Bytes c, narrow::Bytes d) {
    const narrow::Bytes first = narrow::Mean(a, b);
    const narrow::Bytes second = narrow::Mean(c, d);
    return narrow::Mean(first, second) - (((a ^ b) | (c ^ d)) & (first ^ second) & narrow::BroadcastByte(1));
}

// Stores the first, the third and the fifth of packed pixels, and bytes behind them.
inline void StoreEveryOther(BYTE* result, narrow::Bytes pixels) {
    if constexpr (narrow::kHasByteShuffle) {
        constexpr BYTE kPlaces[16] = {0, 1, 2, 6, 7, 8, 12, 13, 14, 15, 15, 15, 15, 15, 15, 15};
        narrow::StoreBytes(result, narrow::ShuffleBytes(pixels, narrow::LoadShuffle(kPlaces)));
        return;
    }
    BYTE bytes[16];
    narrow::StoreBytes(bytes, pixels);
    for (int i = 0; i < 3; ++i) {
        __builtin_memcpy(result + 3 * i, bytes + 6 * i, 4);
    }
}

// Three pairs at a time: every byte with that of the next pixel, whether a pair begins there or not; then those where
// one does are taken. A byte beyond the three is read.
void AverageFourTriples(const BYTE* lower, const BYTE* upper, int count, BYTE* result) {
    int done = 0;
    for (; done + 3 < count; done += 3) {
        const BYTE* const below = lower + std::ptrdiff_t{6} * done;
        const BYTE* const above = upper + std::ptrdiff_t{6} * done;
        StoreEveryOther(result + std::ptrdiff_t{3} * done,
                        MeanOfFour(narrow::LoadBytes(below), narrow::LoadBytes(below + 3), narrow::LoadBytes(above),
                                   narrow::LoadBytes(above + 3)));
    }
    for (int i = 3 * done; i < 3 * count; ++i) {
        const std::ptrdiff_t at = std::ptrdiff_t{i} + i / 3 * 3;
        result[i] = static_cast<BYTE>((lower[at] + lower[at + 3] + upper[at] + upper[at + 3] + 2) >> 2);
    }
}

void WidenToFloats(const BYTE* __restrict row, float* __restrict result, int count) {
    for (int i = 0; i < count; ++i) {
        result[i] = static_cast<float>(row[i]);
    }
}

void BlendColumns(const float* __restrict cells, const ColumnWeights& weights, float* __restrict result, int count) {
    const int* __restrict const cell = weights.cell;
    const float* __restrict const right = weights.right;
    const float* __restrict const left = weights.left;
    for (int i = 0; i < count; ++i) {
        result[i] = cells[cell[i] + 1] * right[i] + cells[cell[i]] * left[i];
    }
}

void BlendTriples(const float* __restrict cells, const ColumnWeights& weights, float* __restrict result, int count) {
    const int* __restrict const cell = weights.cell;
    const float* __restrict const right = weights.right;
    const float* __restrict const left = weights.left;
    for (int i = 0; i < count; ++i) {
        PixelOfFloats own;
        PixelOfFloats next;
        __builtin_memcpy(&own, cells + std::ptrdiff_t{cell[i]} * 3, sizeof own);
        __builtin_memcpy(&next, cells + std::ptrdiff_t{cell[i]} * 3 + 3, sizeof next);
        const PixelOfFloats blended = next * right[i] + own * left[i];
        __builtin_memcpy(result + std::ptrdiff_t{i} * 3, &blended, sizeof blended);
    }
}

void BlendRows(const float* __restrict upper, const float* __restrict lower, float upperWeight, BYTE* __restrict result,
               int count) {
    const float lowerWeight = 1.0F - upperWeight;
    for (int i = 0; i < count; ++i) {
        const auto value = static_cast<int>(upper[i] * upperWeight + lower[i] * lowerWeight + 0.5F);
        result[i] = static_cast<BYTE>(value < 0 ? 0 : value > 255 ? 255 : value);
    }
}

constexpr ResizeKernels kKernels = {WidenRow,           AddRow<std::uint32_t>, AddRow<WORD>,    Average,
                                    AverageGroups<1>,   AverageGroups<3>,      AverageSmall<1>, AverageSmall<3>,
                                    AverageFourTriples, WidenToFloats,         BlendColumns,    BlendTriples,
                                    BlendRows};
