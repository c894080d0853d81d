// Compiled once per target, see each_target.h.

void Means(const BYTE* samples, int step, int count, BYTE* result) {
    const Words third = BroadcastWord(0x5556); // of sums up to 3 * 255, exact
    for (int i = 0; i < count; i += kWordLanes) {
        const Words sum =
            LoadBytesAsWords(samples + i - step) + LoadBytesAsWords(samples + i) + LoadBytesAsWords(samples + i + step);
        StoreWordsAsBytes(result + i, MultiplyHigh(sum, third));
    }
}

template <class Vector>
inline void Order(Vector& low, Vector& high) {
    const Vector smaller = Min(low, high);
    high = Max(low, high);
    low = smaller;
}

// The fifth of nine, by the network of exchanges that sorts no more than is needed.
template <class Vector>
inline Vector MedianOfNine(Vector (&v)[9]) {
    Order(v[1], v[2]);
    Order(v[4], v[5]);
    Order(v[7], v[8]);
    Order(v[0], v[1]);
    Order(v[3], v[4]);
    Order(v[6], v[7]);
    Order(v[1], v[2]);
    Order(v[4], v[5]);
    Order(v[7], v[8]);
    v[3] = Max(v[0], v[3]);
    v[5] = Min(v[5], v[8]);
    Order(v[4], v[7]);
    v[6] = Max(v[3], v[6]);
    v[4] = Max(v[1], v[4]);
    v[2] = Min(v[2], v[5]);
    v[4] = Min(v[4], v[7]);
    Order(v[4], v[2]);
    v[4] = Max(v[6], v[4]);
    return Min(v[4], v[2]);
}

// The centre takes part as the largest value, so that the fifth of nine is the fifth of the eight neighbours. Two small
// values and a large one for a missing row do the same for the third of five.
template <bool kMissing>
inline void MediansOf(const BYTE* own, const BYTE* row1, const BYTE* row2, int step, int threshold, int count,
                      BYTE* result) {
    const Bytes limit = BroadcastByte(threshold);
    const Bytes smallest = BroadcastByte(0);
    const Bytes largest = BroadcastByte(255);
    for (int i = 0; i < count; i += kByteLanes) {
        const Bytes centre = LoadBytes(own + i);
        Bytes v[9] = {LoadBytes(row1 + i - step),
                      LoadBytes(own + i - step),
                      LoadBytes(row1 + i),
                      LoadBytes(row1 + i + step),
                      LoadBytes(own + i + step),
                      largest,
                      smallest,
                      smallest,
                      largest};
        Bytes low = Min(Min(Min(v[0], v[1]), Min(v[2], v[3])), v[4]);
        Bytes high = Max(Max(Max(v[0], v[1]), Max(v[2], v[3])), v[4]);
        if constexpr (!kMissing) {
            v[6] = LoadBytes(row2 + i - step);
            v[7] = LoadBytes(row2 + i);
            v[8] = LoadBytes(row2 + i + step);
            low = Min(low, Min(Min(v[6], v[7]), v[8]));
            high = Max(high, Max(Max(v[6], v[7]), v[8]));
        }
        const Bytes beyond =
            SubtractSaturated(Max(SubtractSaturated(high, centre), SubtractSaturated(centre, low)), limit);
        const auto kept = reinterpret_cast<Bytes>(beyond == smallest);
        StoreBytes(result + i, (centre & kept) | (MedianOfNine(v) & ~kept));
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
        LoadKeys(from.rows[1] + i, 3, keys + 3);
        if constexpr (kAbove) {
            LoadKeys(from.rows[2] + i, 6, keys + 6);
        } else {
            LoadNoKeys(keys + 6);
        }
        use(i, MedianOfNine(keys));
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

constexpr SmoothingKernels kKernels = {Means, Medians, MedianPositions, MedianLevels};
