// Four lanes of a vector register under names that both targets share; lanes_avx2.inl has eight. Included by kernel
// files inside the namespace of a target. Arithmetic uses the operators of the vector types.

constexpr int kLanes = 4;
using Floats = __m128;
using Ints = int __attribute__((vector_size(16)));

inline Floats Spread(float value) {
    return _mm_set1_ps(value);
}
inline Ints SpreadInt(int value) {
    return reinterpret_cast<Ints>(_mm_set1_epi32(value));
}
// kLanes bytes as floats.
inline Floats LoadBytes(const BYTE* bytes) {
    int packed;
    __builtin_memcpy(&packed, bytes, sizeof packed);
    const __m128i zero = _mm_setzero_si128();
    const __m128i words = _mm_unpacklo_epi8(_mm_cvtsi32_si128(packed), zero);
    return _mm_cvtepi32_ps(_mm_unpacklo_epi16(words, zero));
}
// Truncates toward zero; values are within 32 bits.
inline Ints Truncate(Floats value) {
    return reinterpret_cast<Ints>(_mm_cvttps_epi32(value));
}
inline Floats ToFloats(Ints value) {
    return _mm_cvtepi32_ps(reinterpret_cast<__m128i>(value));
}
// Truncates toward zero, clamps to 0..255 and stores kLanes bytes. Packing saturates, so only values beyond 32 bits
// have to be kept off; far negative ones become the most negative number.
inline void StoreBytes(BYTE* bytes, Floats value) {
    const __m128i ints = _mm_cvttps_epi32(_mm_min_ps(value, _mm_set1_ps(255.0F)));
    const __m128i words = _mm_packs_epi32(ints, ints);
    const int packed = _mm_cvtsi128_si32(_mm_packus_epi16(words, words));
    __builtin_memcpy(bytes, &packed, sizeof packed);
}
