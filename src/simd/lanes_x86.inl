// The lanes of a 16-byte register under names that all targets share, in the instructions that every x86 processor with
// SSE2 has. Included inside the namespace of a target. Arithmetic uses the operators of the vector types.

constexpr int kLanes = 4;
using Floats = __m128;
using Ints = int __attribute__((vector_size(16)));

inline Floats Broadcast(float value) {
    return _mm_set1_ps(value);
}
inline Ints BroadcastInt(int value) {
    return reinterpret_cast<Ints>(_mm_set1_epi32(value));
}
// Clamped to 0..255.
inline void StoreIntsAsBytes(BYTE* bytes, Ints value) {
    const auto ints = reinterpret_cast<__m128i>(value);
    const __m128i words = _mm_packs_epi32(ints, ints);
    const int packed = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
    __builtin_memcpy(bytes, &packed, sizeof packed);
}
// Those of both.
inline void StoreIntsAsBytes(BYTE* bytes, Ints first, Ints second) {
    const __m128i words = _mm_packs_epi32(reinterpret_cast<__m128i>(first), reinterpret_cast<__m128i>(second));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(words, words));
}
// The ints of both, clamped to 16 bits with sign.
inline void StoreIntsAsWords(BYTE* words, Ints first, Ints second) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(words),
                     _mm_packs_epi32(reinterpret_cast<__m128i>(first), reinterpret_cast<__m128i>(second)));
}
// Truncates toward zero; values are within 32 bits.
inline Ints Truncate(Floats value) {
    return reinterpret_cast<Ints>(_mm_cvttps_epi32(value));
}
inline Floats ToFloats(Ints value) {
    return _mm_cvtepi32_ps(reinterpret_cast<__m128i>(value));
}
// The highest bit of each lane, that of the first one lowest.
inline unsigned MoveMask(Ints value) {
    return static_cast<unsigned>(_mm_movemask_ps(reinterpret_cast<__m128>(value)));
}
// Truncates toward zero, clamps to 0..255 and stores kLanes bytes. Packing saturates, so only values beyond 32 bits
// have to be kept off; far negative ones become the most negative number.
inline void StoreFloatsAsBytes(BYTE* bytes, Floats value) {
    StoreIntsAsBytes(bytes, Truncate(_mm_min_ps(value, _mm_set1_ps(255.0F))));
}

// --- Words: 2 * kLanes lanes of 16 bits ------------------------------------------------------------------------------

constexpr int kWordLanes = 8;
using Words = WORD __attribute__((vector_size(16)));

inline Words BroadcastWord(int value) {
    return reinterpret_cast<Words>(_mm_set1_epi16(static_cast<short>(value)));
}
// kWordLanes bytes, widened.
inline Words LoadBytesAsWords(const BYTE* bytes) {
    return reinterpret_cast<Words>(
        _mm_unpacklo_epi8(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes)), _mm_setzero_si128()));
}
// Signed words, clamped to 0..255.
inline void StoreWordsAsBytes(BYTE* bytes, Words words) {
    const auto value = reinterpret_cast<__m128i>(words);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(value, value));
}
// Words in an order that becomes their own one by PairLow and PairHigh, which make ints of two words each.
inline Words LoadWordsToPair(const BYTE* words) {
    return reinterpret_cast<Words>(_mm_loadu_si128(reinterpret_cast<const __m128i*>(words)));
}
inline Ints PairLow(Words low, Words high) {
    return reinterpret_cast<Ints>(_mm_unpacklo_epi16(reinterpret_cast<__m128i>(low), reinterpret_cast<__m128i>(high)));
}
inline Ints PairHigh(Words low, Words high) {
    return reinterpret_cast<Ints>(_mm_unpackhi_epi16(reinterpret_cast<__m128i>(low), reinterpret_cast<__m128i>(high)));
}
// Unsigned words as two vectors of ints, in an order that PackInts turns back.
inline Ints UnpackLow(Words words) {
    return reinterpret_cast<Ints>(_mm_unpacklo_epi16(reinterpret_cast<__m128i>(words), _mm_setzero_si128()));
}
inline Ints UnpackHigh(Words words) {
    return reinterpret_cast<Ints>(_mm_unpackhi_epi16(reinterpret_cast<__m128i>(words), _mm_setzero_si128()));
}
// Clamps to 16 bits with sign.
inline Words PackInts(Ints low, Ints high) {
    return reinterpret_cast<Words>(_mm_packs_epi32(reinterpret_cast<__m128i>(low), reinterpret_cast<__m128i>(high)));
}
inline Words MultiplyHigh(Words a, Words b) {
    return reinterpret_cast<Words>(_mm_mulhi_epu16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}
inline Floats Min(Floats a, Floats b) {
    return _mm_min_ps(a, b);
}
inline Floats Max(Floats a, Floats b) {
    return _mm_max_ps(a, b);
}
inline Floats SquareRoot(Floats value) {
    return _mm_sqrt_ps(value);
}
// The sums of the squares of two signed words each, in the order of UnpackLow and UnpackHigh.
inline Ints LowSquareSums(Words a, Words b) {
    const __m128i pairs = _mm_unpacklo_epi16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b));
    return reinterpret_cast<Ints>(_mm_madd_epi16(pairs, pairs));
}
inline Ints HighSquareSums(Words a, Words b) {
    const __m128i pairs = _mm_unpackhi_epi16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b));
    return reinterpret_cast<Ints>(_mm_madd_epi16(pairs, pairs));
}
// The sums of the products of neighbouring signed words.
inline Ints MultiplyAddPairs(Words a, Words b) {
    return reinterpret_cast<Ints>(_mm_madd_epi16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}
// Of signed words.
inline Words Min(Words a, Words b) {
    return reinterpret_cast<Words>(_mm_min_epi16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}
inline Words Max(Words a, Words b) {
    return reinterpret_cast<Words>(_mm_max_epi16(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}

// --- Bytes: 4 * kLanes lanes of 8 bits -------------------------------------------------------------------------------

constexpr int kByteLanes = 16;
using Bytes = BYTE __attribute__((vector_size(16)));

inline Bytes BroadcastByte(int value) {
    return reinterpret_cast<Bytes>(_mm_set1_epi8(static_cast<char>(value)));
}
inline Bytes LoadBytes(const BYTE* bytes) {
    return reinterpret_cast<Bytes>(_mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes)));
}
inline void StoreBytes(BYTE* bytes, Bytes value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), reinterpret_cast<__m128i>(value));
}
inline Bytes Min(Bytes a, Bytes b) {
    return reinterpret_cast<Bytes>(_mm_min_epu8(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}
inline Bytes Max(Bytes a, Bytes b) {
    return reinterpret_cast<Bytes>(_mm_max_epu8(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}
// a + b, at most 255.
inline Bytes AddSaturated(Bytes a, Bytes b) {
    return reinterpret_cast<Bytes>(_mm_adds_epu8(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}
// The mean, halves up.
inline Bytes Mean(Bytes a, Bytes b) {
    return reinterpret_cast<Bytes>(_mm_avg_epu8(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}
// a - b, or 0 where b is larger.
inline Bytes SubtractSaturated(Bytes a, Bytes b) {
    return reinterpret_cast<Bytes>(_mm_subs_epu8(reinterpret_cast<__m128i>(a), reinterpret_cast<__m128i>(b)));
}

// kLanes packed 24-bit pixels, four in each 16 bytes; the bytes behind them are read and written too.
inline Bytes LoadPixels24(const BYTE* pixels) {
    return LoadBytes(pixels);
}
inline void StorePixels24(BYTE* pixels, Bytes value) {
    StoreBytes(pixels, value);
}
// What ShuffleBytes is to take into each 16 bytes.
inline Bytes LoadShuffle(const BYTE (&places)[16]) {
    return LoadBytes(places);
}

// --- Doubles: half of kLanes lanes, whose whole numbers are the first lanes of 16 bytes
// -------------------------------

constexpr int kDoubleLanes = 2;
using Doubles = __m128d;
using FewInts = int __attribute__((vector_size(16)));

inline Doubles BroadcastDouble(double value) {
    return _mm_set1_pd(value);
}
inline Doubles SquareRoot(Doubles value) {
    return _mm_sqrt_pd(value);
}
// Truncates toward zero; lanes that are left over are 0.
inline FewInts TruncateDoubles(Doubles value) {
    return reinterpret_cast<FewInts>(_mm_cvttpd_epi32(value));
}
// Stores kDoubleLanes of them.
inline void StoreFewInts(int* ints, FewInts value) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(ints), reinterpret_cast<__m128i>(value));
}

// --- One pixel: four words -------------------------------------------------------------------------------------------

// Four words, and zeros.
inline Words LoadFourWords(const WORD* words) {
    return reinterpret_cast<Words>(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(words)));
}
// Four bytes, widened, and zeros.
inline Words LoadFourBytesAsWords(const BYTE* bytes) {
    int packed;
    __builtin_memcpy(&packed, bytes, sizeof packed);
    return reinterpret_cast<Words>(_mm_unpacklo_epi8(_mm_cvtsi32_si128(packed), _mm_setzero_si128()));
}
// The first four, signed words, clamped to 0..255.
inline void StoreFourWordsAsBytes(BYTE* bytes, Words words) {
    const auto value = reinterpret_cast<__m128i>(words);
    const int packed = _mm_cvtsi128_si32(_mm_packus_epi16(value, value));
    __builtin_memcpy(bytes, &packed, sizeof packed);
}
