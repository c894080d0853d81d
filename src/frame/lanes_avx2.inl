// Eight lanes of a vector register, see lanes_sse2.inl.

constexpr int kLanes = 8;
using Floats = __m256;
using Ints = int __attribute__((vector_size(32)));

inline Floats Spread(float value) {
    return _mm256_set1_ps(value);
}
inline Ints SpreadInt(int value) {
    return reinterpret_cast<Ints>(_mm256_set1_epi32(value));
}
inline Floats LoadBytes(const BYTE* bytes) {
    return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(bytes))));
}
inline Ints Truncate(Floats value) {
    return reinterpret_cast<Ints>(_mm256_cvttps_epi32(value));
}
inline Floats ToFloats(Ints value) {
    return _mm256_cvtepi32_ps(reinterpret_cast<__m256i>(value));
}
inline void StoreBytes(BYTE* bytes, Floats value) {
    const __m256i ints = _mm256_cvttps_epi32(_mm256_min_ps(value, _mm256_set1_ps(255.0F)));
    const __m128i words = _mm_packs_epi32(_mm256_castsi256_si128(ints), _mm256_extracti128_si256(ints, 1));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(bytes), _mm_packus_epi16(words, words));
}
