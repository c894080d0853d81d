// Compiled once per target, see each_target.h.

#include "filter/medians.inl"

void Means(const BYTE* samples, int step, int count, BYTE* result) {
    const Words third = BroadcastWord(0x5556); // of sums up to 3 * 255, exact
    for (int i = 0; i < count; i += kWordLanes) {
        const Words sum =
            LoadBytesAsWords(samples + i - step) + LoadBytesAsWords(samples + i) + LoadBytesAsWords(samples + i + step);
        StoreWordsAsBytes(result + i, MultiplyHigh(sum, third));
    }
}

// The columns on both sides, and the centre's with the largest value in its place, so that the fifth of nine is the
// fifth of the eight neighbours. Of a missing row two small values and a large one do the same for the third of five.
template <bool kMissing>
inline void MediansOf(const BYTE* own, const BYTE* row1, const BYTE* row2, int step, int threshold, int count,
                      BYTE* result) {
    const Bytes limit = BroadcastByte(threshold);
    const Bytes smallest = BroadcastByte(0);
    const Bytes largest = BroadcastByte(255);
    const auto side = [=](int i) __attribute__((always_inline)) {
        return Sort(LoadBytes(own + i), LoadBytes(row1 + i), kMissing ? smallest : LoadBytes(row2 + i));
    };
    for (int i = 0; i < count; i += kByteLanes) {
        const Bytes centre = LoadBytes(own + i);
        const Bytes first = LoadBytes(row1 + i);
        const Bytes second = kMissing ? first : LoadBytes(row2 + i);
        const Sorted<Bytes> left = side(i - step);
        const Sorted<Bytes> right = side(i + step);
        const Sorted<Bytes> between = {Min(first, second), kMissing ? largest : Max(first, second), largest};
        const Bytes low = Min(kMissing ? Min(left.middle, right.middle) : Min(left.low, right.low), between.low);
        const Bytes high = Max(Max(left.high, right.high), kMissing ? first : between.middle);
        const Bytes beyond =
            SubtractSaturated(Max(SubtractSaturated(high, centre), SubtractSaturated(centre, low)), limit);
        const auto kept = reinterpret_cast<Bytes>(beyond == smallest);
        StoreBytes(result + i, (centre & kept) | (MedianOfColumns(left, between, right) & ~kept));
    }
}

void Medians(const RowsOfThree& around, int step, int threshold, int count, BYTE* result) {
    const BYTE* const own = around.rows[1];
    const BYTE* const below = around.rows[0];
    const BYTE* const above = around.rows[2];
    if (below != nullptr && above != nullptr) {
        MediansOf<false>(own, below, above, step, threshold, count, result);
    } else {
        MediansOf<true>(own, below != nullptr ? below : above, nullptr, step, threshold, count, result);
    }
}

// Sample * 16 + place: no two keys are equal, so any way of sorting ranks equal samples by their place.
inline void LoadKeys(const BYTE* row, int place, Words* keys) {
    for (int k = 0; k < 3; ++k) {
        keys[k] = LoadBytesAsWords(row + k - 1) << 4 | BroadcastWord(place + k);
    }
}

// Instead of a row's keys: one that is smaller than any, two that are larger, so that the fifth of nine is the fourth
// of six.
inline void LoadNoKeys(Words* keys) {
    keys[0] = BroadcastWord(-1);
    keys[1] = BroadcastWord(0x7FFF);
    keys[2] = BroadcastWord(0x7FFF);
}

template <bool kBelow, bool kAbove, class Use>
inline void EachMedianKey(const RowsOfThree& around, int count, Use use) {
    const RowsOfThree from = around;
    for (int i = 0; i < count; i += kWordLanes) {
        Words keys[9];
        if constexpr (kBelow) {
            LoadKeys(from.rows[0] + i, 0, keys);
        } else {
            LoadNoKeys(keys);
        }
        LoadKeys(from.rows[1] + i, 4, keys + 3);
        if constexpr (kAbove) {
            LoadKeys(from.rows[2] + i, 8, keys + 6);
        } else {
            LoadNoKeys(keys + 6);
        }
        use(i, MedianOfColumns(Sort(keys[0], keys[3], keys[6]), Sort(keys[1], keys[4], keys[7]),
                               Sort(keys[2], keys[5], keys[8])));
    }
}

template <class Use>
inline void ForEachMedianKey(const RowsOfThree& around, int count, Use use) {
    if (around.rows[0] == nullptr) {
        EachMedianKey<false, true>(around, count, use);
    } else if (around.rows[2] == nullptr) {
        EachMedianKey<true, false>(around, count, use);
    } else {
        EachMedianKey<true, true>(around, count, use);
    }
}

void MedianPositions(const RowsOfThree& around, int count, BYTE* result) {
    ForEachMedianKey(around, count, [=](int i, Words key) { StoreWordsAsBytes(result + i, key & BroadcastWord(15)); });
}

void MedianLevels(const RowsOfThree& around, int count, BYTE* result) {
    ForEachMedianKey(around, count, [=](int i, Words key) { StoreWordsAsBytes(result + i, key >> 4); });
}

// Every byte of a pixel gets the pixel's position.
inline void Triple(const BYTE* positions, int count, BYTE* result) {
    using Bytes16 = BYTE __attribute__((vector_size(16)));
    for (int i = 0; i < count; i += 16) {
        Bytes16 each;
        __builtin_memcpy(&each, positions + i, sizeof each);
        const Bytes16 tripled[3] = {
            __builtin_shufflevector(each, each, 0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 4, 4, 4, 5),
            __builtin_shufflevector(each, each, 5, 5, 6, 6, 6, 7, 7, 7, 8, 8, 8, 9, 9, 9, 10, 10),
            __builtin_shufflevector(each, each, 10, 11, 11, 11, 12, 12, 12, 13, 13, 13, 14, 14, 14, 15, 15, 15)};
        __builtin_memcpy(result + 3 * i, tripled, sizeof tripled);
    }
}

// Bytes from all nine places, of which two are chosen between until one is left.
inline Bytes ChosenBytes(const RowsOfThree& around, std::ptrdiff_t at, Bytes position) {
    const Bytes column = position & BroadcastByte(3);
    const Bytes row = position & BroadcastByte(12);
    const auto isLeft = column == BroadcastByte(0);
    const auto isRight = column == BroadcastByte(2);
    const auto ofRow = [=](const BYTE* bytes) __attribute__((always_inline)) {
        const Bytes own = isLeft ? LoadBytes(bytes + at - 3) : LoadBytes(bytes + at);
        return isRight ? LoadBytes(bytes + at + 3) : own;
    };
    const Bytes own = row == BroadcastByte(0) ? ofRow(around.rows[0]) : ofRow(around.rows[1]);
    return row == BroadcastByte(8) ? ofRow(around.rows[2]) : own;
}

void CopyNeighbours24(const RowsOfThree& given, const BYTE* positions, int count, BYTE* result) {
    constexpr int kPart = 8 * kByteLanes; // pixels, which are whole vectors
    const RowsOfThree around = given;     // which storing bytes cannot change
    BYTE tripled[3 * kPart];
    BYTE rest[3 * kPart];
    for (int done = 0; done < count; done += kPart) {
        const int part = std::min(count - done, kPart);
        const std::ptrdiff_t start = std::ptrdiff_t{3} * done;
        BYTE* const pixels = part == kPart ? result + start : rest;
        Triple(positions + done, part, tripled);
        for (int i = 0; i < 3 * part; i += kByteLanes) {
            StoreBytes(pixels + i, ChosenBytes(around, start + i, LoadBytes(tripled + i)));
        }
        if (pixels == rest) {
            __builtin_memcpy(result + start, rest, static_cast<std::size_t>(part) * 3);
        }
    }
}

constexpr SmoothingKernels kKernels = {Means, Medians, MedianPositions, MedianLevels,
                                       kHasByteShuffle ? CopyNeighbours24 : nullptr};
