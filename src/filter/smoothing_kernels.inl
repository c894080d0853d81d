// Compiled once per target, see each_target.h.

#include "filter/medians.inl"
#include "simd/tripled_bytes.inl"
#include "simd/word_rows.inl"

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
        StoreBytes(result + i, beyond == smallest ? centre : MedianOfColumns(left, between, right));
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

// Sample * 16 + place: no two keys are equal, so any way of sorting ranks equal samples by their place. Columns are
// sorted once, by keys that do not tell the column yet.
constexpr int kSortedColumns = 256 + kWordLanes;

struct alignas(64) SortedColumns {
    WORD low[kSortedColumns];
    WORD middle[kSortedColumns]; // with two rows the upper one
    WORD high[kSortedColumns];   // with two rows nothing
};

inline Words LoadKeys(const BYTE* row, int place) {
    return LoadBytesAsWords(row) << 4 | BroadcastWord(place);
}

template <bool kMissing>
inline void SortColumns(RowsOfThree around, int begin, int count, SortedColumns& columns) {
    const BYTE* const own = around.rows[1] + begin;
    const bool isBelow = around.rows[0] != nullptr;
    const BYTE* const other = around.rows[isBelow ? 0 : 2] + begin; // the only one, where one is missing
    for (int i = 0; i < count; i += kWordLanes) {
        const Words keys = LoadKeys(own + i, 4);
        if constexpr (kMissing) {
            const Words others = LoadKeys(other + i, isBelow ? 0 : 8);
            StoreWords(columns.low + i, Min(keys, others));
            StoreWords(columns.middle + i, Max(keys, others));
        } else {
            const Sorted<Words> sorted = Sort(LoadKeys(other + i, 0), keys, LoadKeys(around.rows[2] + begin + i, 8));
            StoreWords(columns.low + i, sorted.low);
            StoreWords(columns.middle + i, sorted.middle);
            StoreWords(columns.high + i, sorted.high);
        }
    }
}

// The column at a place of the neighbourhood. Instead of a missing row there are a key that is smaller than any and two
// that are larger, so that the fifth of nine is the fourth of six.
template <bool kMissing>
inline Sorted<Words> ColumnAt(const SortedColumns& columns, int i, int place) {
    const Words at = BroadcastWord(place);
    const Words low = LoadWords(columns.low + i + place) | at;
    const Words middle = LoadWords(columns.middle + i + place) | at;
    if constexpr (kMissing) {
        return place == 0 ? Sorted<Words>{BroadcastWord(-1), low, middle}
                          : Sorted<Words>{low, middle, BroadcastWord(0x7FFF)};
    }
    return {low, middle, LoadWords(columns.high + i + place) | at};
}

template <bool kMissing, class Use>
inline void EachMedianKey(const RowsOfThree& around, int count, Use use) {
    constexpr int kPart = kSortedColumns - kWordLanes;
    SortedColumns columns;
    for (int done = 0; done < count; done += kPart) {
        const int part = std::min(count - done, kPart);
        SortColumns<kMissing>(around, done - 1, part + 2, columns);
        for (int i = 0; i < part; i += kWordLanes) {
            use(done + i, MedianOfColumns(ColumnAt<kMissing>(columns, i, 0), ColumnAt<kMissing>(columns, i, 1),
                                          ColumnAt<kMissing>(columns, i, 2)));
        }
    }
}

template <class Use>
inline void ForEachMedianKey(const RowsOfThree& around, int count, Use use) {
    if (around.rows[0] == nullptr || around.rows[2] == nullptr) {
        EachMedianKey<true>(around, count, use);
    } else {
        EachMedianKey<false>(around, count, use);
    }
}

void MedianPositions(const RowsOfThree& around, int count, BYTE* result) {
    ForEachMedianKey(around, count, [=](int i, Words key) { StoreWordsAsBytes(result + i, key & BroadcastWord(15)); });
}

void MedianLevels(const RowsOfThree& around, int count, BYTE* result) {
    ForEachMedianKey(around, count, [=](int i, Words key) { StoreWordsAsBytes(result + i, key >> 4); });
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
    const RowsOfThree around = given; // which storing bytes cannot change
    const auto copy = [=](int first, BYTE* pixels) __attribute__((always_inline)) {
        for (int vector = 0; vector < 3; ++vector) {
            const int at = vector * kByteLanes;
            StoreBytes(pixels + at,
                       ChosenBytes(around, std::ptrdiff_t{3} * first + at, LoadTripled(positions + first, vector)));
        }
    };
    int i = 0;
    for (; i + kByteLanes <= count; i += kByteLanes) {
        copy(i, result + std::ptrdiff_t{3} * i);
    }
    if (i < count) {
        BYTE rest[3 * kByteLanes];
        copy(i, rest);
        __builtin_memcpy(result + std::ptrdiff_t{3} * i, rest, static_cast<std::size_t>(count - i) * 3);
    }
}

constexpr SmoothingKernels kKernels = {Means, Medians, MedianPositions, MedianLevels,
                                       kHasByteShuffle ? CopyNeighbours24 : nullptr};
