// The lanes of a 32-byte register, for an x86 processor with AVX2; lanes_x86.inl says what they are.

constexpr int kLanes = 8;
using Floats = __m256;
using Ints = int __attribute__((vector_size(32)));

inline Floats Broadcast(float value) {
    return _mm256_set1_ps(value);
}
inline Ints BroadcastInt(int value) {
    return reinterpret_cast<Ints>(_mm256_set1_epi32(value));
}
inline Floats LoadBytesAsFloats(const BYTE* bytes) {
    return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes))));
}
inline void StoreIntsAsBytes(BYTE* bytes, Ints value) {
    const auto ints = reinterpret_cast<__m256i>(value);
    const __m128i words = _mm_packs_epi32(_mm256_castsi256_si128(ints), _mm256_extracti128_si256(ints, 1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(words, words));
}
inline void StoreIntsAsBytes(BYTE* bytes, Ints first, Ints second) {
    const __m256i words = _mm256_packs_epi32(reinterpret_cast<__m256i>(first), reinterpret_cast<__m256i>(second));
    const __m128i fours = _mm_packus_epi16(_mm256_castsi256_si128(words), _mm256_extracti128_si256(words, 1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), _mm_shuffle_epi32(fours, _MM_SHUFFLE(3, 1, 2, 0)));
}
inline void StoreIntsAsWords(BYTE* words, Ints first, Ints second) {
    const __m256i packed = _mm256_packs_epi32(reinterpret_cast<__m256i>(first), reinterpret_cast<__m256i>(second));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(words), _mm256_permute4x64_epi64(packed, _MM_SHUFFLE(3, 1, 2, 0)));
}
inline Ints Truncate(Floats value) {
    return reinterpret_cast<Ints>(_mm256_cvttps_epi32(value));
}
inline Floats ToFloats(Ints value) {
    return _mm256_cvtepi32_ps(reinterpret_cast<__m256i>(value));
}
inline unsigned MoveMask(Ints value) {
    return static_cast<unsigned>(_mm256_movemask_ps(reinterpret_cast<__m256>(value)));
}
inline void StoreFloatsAsBytes(BYTE* bytes, Floats value) {
    StoreIntsAsBytes(bytes, Truncate(_mm256_min_ps(value, _mm256_set1_ps(255.0F))));
}

// --- Words: 2 * kLanes lanes of 16 bits ------------------------------------------------------------------------------

constexpr int kWordLanes = 16;
using Words = WORD __attribute__((vector_size(32)));

inline Words BroadcastWord(int value) {
    return reinterpret_cast<Words>(_mm256_set1_epi16(static_cast<short>(value)));
}
inline Words LoadBytesAsWords(const BYTE* bytes) {
    return reinterpret_cast<Words>(_mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes))));
}
inline void StoreWordsAsBytes(BYTE* bytes, Words words) {
    const auto value = reinterpret_cast<__m256i>(words);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes),
                     _mm_packus_epi16(_mm256_castsi256_si128(value), _mm256_extracti128_si256(value, 1)));
}
inline Words LoadWordsToPair(const BYTE* words) {
    const __m256i loaded = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words));
    return reinterpret_cast<Words>(_mm256_permute4x64_epi64(loaded, _MM_SHUFFLE(3, 1, 2, 0)));
}
inline Ints PairLow(Words low, Words high) {
    return reinterpret_cast<Ints>(
        _mm256_unpacklo_epi16(reinterpret_cast<__m256i>(low), reinterpret_cast<__m256i>(high)));
}
inline Ints PairHigh(Words low, Words high) {
    return reinterpret_cast<Ints>(
        _mm256_unpackhi_epi16(reinterpret_cast<__m256i>(low), reinterpret_cast<__m256i>(high)));
}
inline Ints UnpackLow(Words words) {
    return reinterpret_cast<Ints>(_mm256_unpacklo_epi16(reinterpret_cast<__m256i>(words), _mm256_setzero_si256()));
}
inline Ints UnpackHigh(Words words) {
    return reinterpret_cast<Ints>(_mm256_unpackhi_epi16(reinterpret_cast<__m256i>(words), _mm256_setzero_si256()));
}
inline Words PackInts(Ints low, Ints high) {
    return reinterpret_cast<Words>(_mm256_packs_epi32(reinterpret_cast<__m256i>(low), reinterpret_cast<__m256i>(high)));
}
inline Words MultiplyHigh(Words a, Words b) {
    return reinterpret_cast<Words>(_mm256_mulhi_epu16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}
inline Floats Min(Floats a, Floats b) {
    return _mm256_min_ps(a, b);
}
inline Floats Max(Floats a, Floats b) {
    return _mm256_max_ps(a, b);
}
inline Floats SquareRoot(Floats value) {
    return _mm256_sqrt_ps(value);
}
inline Ints LowSquareSums(Words a, Words b) {
    const __m256i pairs = _mm256_unpacklo_epi16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b));
    return reinterpret_cast<Ints>(_mm256_madd_epi16(pairs, pairs));
}
inline Ints HighSquareSums(Words a, Words b) {
    const __m256i pairs = _mm256_unpackhi_epi16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b));
    return reinterpret_cast<Ints>(_mm256_madd_epi16(pairs, pairs));
}
inline Ints MultiplyAddPairs(Words a, Words b) {
    return reinterpret_cast<Ints>(_mm256_madd_epi16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}
inline Words Min(Words a, Words b) {
    return reinterpret_cast<Words>(_mm256_min_epi16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}
inline Words Max(Words a, Words b) {
    return reinterpret_cast<Words>(_mm256_max_epi16(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}

// --- Bytes: 4 * kLanes lanes of 8 bits -------------------------------------------------------------------------------

constexpr int kByteLanes = 32;
using Bytes = BYTE __attribute__((vector_size(32)));

inline Bytes BroadcastByte(int value) {
    return reinterpret_cast<Bytes>(_mm256_set1_epi8(static_cast<char>(value)));
}
inline Bytes LoadBytes(const BYTE* bytes) {
    return reinterpret_cast<Bytes>(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes)));
}
inline void StoreBytes(BYTE* bytes, Bytes value) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(bytes), reinterpret_cast<__m256i>(value));
}
inline Bytes Min(Bytes a, Bytes b) {
    return reinterpret_cast<Bytes>(_mm256_min_epu8(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}
inline Bytes Max(Bytes a, Bytes b) {
    return reinterpret_cast<Bytes>(_mm256_max_epu8(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}
inline Bytes AddSaturated(Bytes a, Bytes b) {
    return reinterpret_cast<Bytes>(_mm256_adds_epu8(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}
inline Bytes Mean(Bytes a, Bytes b) {
    return reinterpret_cast<Bytes>(_mm256_avg_epu8(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}
inline Bytes SubtractSaturated(Bytes a, Bytes b) {
    return reinterpret_cast<Bytes>(_mm256_subs_epu8(reinterpret_cast<__m256i>(a), reinterpret_cast<__m256i>(b)));
}
inline Bytes LoadPixels24(const BYTE* pixels) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels + 12));
    return reinterpret_cast<Bytes>(_mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1));
}
inline void StorePixels24(BYTE* pixels, Bytes value) {
    const auto both = reinterpret_cast<__m256i>(value);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels), _mm256_castsi256_si128(both));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(pixels + 12), _mm256_extracti128_si256(both, 1));
}
inline Bytes LoadShuffle(const BYTE (&places)[16]) {
    const __m128i once = _mm_loadu_si128(reinterpret_cast<const __m128i*>(places));
    return reinterpret_cast<Bytes>(_mm256_broadcastsi128_si256(once));
}

constexpr bool kHasByteShuffle = true;

inline Bytes ShuffleBytes(Bytes value, Bytes places) {
    return reinterpret_cast<Bytes>(
        _mm256_shuffle_epi8(reinterpret_cast<__m256i>(value), reinterpret_cast<__m256i>(places)));
}

// --- Doubles: half of kLanes lanes, whose whole numbers take 16 bytes ------------------------------------------------

constexpr int kDoubleLanes = 4;
using Doubles = __m256d;
using FewInts = int __attribute__((vector_size(16)));

inline Doubles BroadcastDouble(double value) {
    return _mm256_set1_pd(value);
}
inline Doubles SquareRoot(Doubles value) {
    return _mm256_sqrt_pd(value);
}
inline FewInts TruncateDoubles(Doubles value) {
    return reinterpret_cast<FewInts>(_mm256_cvttpd_epi32(value));
}
inline void StoreFewInts(int* ints, FewInts value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(ints), reinterpret_cast<__m128i>(value));
}
