// Compiled once per target, see each_target.h.

void Means(const BYTE* samples, int step, int count, BYTE* result) {
    const Words third = SpreadWord(0x5556); // of sums up to 3 * 255, exact
    for (int i = 0; i < count; i += kWordLanes) {
        const Words sum = LoadWords(samples + i - step) + LoadWords(samples + i) + LoadWords(samples + i + step);
        StoreWords(result + i, HighProduct(sum, third));
    }
}

template <class Vector>
inline void Order(Vector& low, Vector& high) {
    const Vector smaller = Smaller(low, high);
    high = Larger(low, high);
    low = smaller;
}

// The fifth of nine, by the network of exchanges that sorts no more than is needed.
template <class Vector>
inline Vector MiddleOfNine(Vector (&v)[9]) {
    Order(v[1], v[2]);
    Order(v[4], v[5]);
    Order(v[7], v[8]);
    Order(v[0], v[1]);
    Order(v[3], v[4]);
    Order(v[6], v[7]);
    Order(v[1], v[2]);
    Order(v[4], v[5]);
    Order(v[7], v[8]);
    v[3] = Larger(v[0], v[3]);
    v[5] = Smaller(v[5], v[8]);
    Order(v[4], v[7]);
    v[6] = Larger(v[3], v[6]);
    v[4] = Larger(v[1], v[4]);
    v[2] = Smaller(v[2], v[5]);
    v[4] = Smaller(v[4], v[7]);
    Order(v[4], v[2]);
    v[4] = Larger(v[6], v[4]);
    return Smaller(v[4], v[2]);
}

// The centre takes part as the largest value, so that the fifth of nine is the fifth of the eight neighbours. Two small
// values and a large one for a missing row do the same for the third of five.
template <bool kMissing>
inline void MediansOf(const BYTE* own, const BYTE* row1, const BYTE* row2, int step, int threshold, int count,
                      BYTE* result) {
    const Bytes limit = SpreadByte(threshold);
    const Bytes smallest = SpreadByte(0);
    const Bytes largest = SpreadByte(255);
    for (int i = 0; i < count; i += kByteLanes) {
        const Bytes centre = LoadSamples(own + i);
        Bytes v[9] = {LoadSamples(row1 + i - step),
                      LoadSamples(own + i - step),
                      LoadSamples(row1 + i),
                      LoadSamples(row1 + i + step),
                      LoadSamples(own + i + step),
                      largest,
                      smallest,
                      smallest,
                      largest};
        Bytes low = Smaller(Smaller(Smaller(v[0], v[1]), Smaller(v[2], v[3])), v[4]);
        Bytes high = Larger(Larger(Larger(v[0], v[1]), Larger(v[2], v[3])), v[4]);
        if constexpr (!kMissing) {
            v[6] = LoadSamples(row2 + i - step);
            v[7] = LoadSamples(row2 + i);
            v[8] = LoadSamples(row2 + i + step);
            low = Smaller(low, Smaller(Smaller(v[6], v[7]), v[8]));
            high = Larger(high, Larger(Larger(v[6], v[7]), v[8]));
        }
        const Bytes beyond = Excess(Larger(Excess(high, centre), Excess(centre, low)), limit);
        const auto kept = reinterpret_cast<Bytes>(beyond == smallest);
        StoreSamples(result + i, (centre & kept) | (MiddleOfNine(v) & ~kept));
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
        keys[k] = LoadWords(row + k - 1) << 4 | SpreadWord(place + k);
    }
}

// Instead of a row's keys: one that is smaller than any, two that are larger, so that the fifth of nine is the fourth
// of six.
inline void LoadNoKeys(Words* keys) {
    keys[0] = SpreadWord(-1);
    keys[1] = SpreadWord(0x7FFF);
    keys[2] = SpreadWord(0x7FFF);
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
        use(i, MiddleOfNine(keys));
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
    ForEachMedianKey(around, count, [=](int i, Words key) { StoreWords(result + i, key & SpreadWord(15)); });
}

void MedianLevels(const RowsOfThree& around, int count, BYTE* result) {
    ForEachMedianKey(around, count, [=](int i, Words key) { StoreWords(result + i, key >> 4); });
}

constexpr SmoothingKernels kKernels = {Means, Medians, MedianPositions, MedianLevels};
