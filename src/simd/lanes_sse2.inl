// The lanes of an x86 processor with SSE2.

#include "simd/lanes_x86.inl"

constexpr bool kHasByteShuffle = false; // ShuffleBytes is there, but other ways are faster

#include "simd/shuffle_bytes.inl"

// kLanes bytes as floats.
inline Floats LoadBytesAsFloats(const BYTE* bytes) {
    int packed;
    __builtin_memcpy(&packed, bytes, sizeof packed);
    const __m128i zero = _mm_setzero_si128();
    const __m128i words = _mm_unpacklo_epi8(_mm_cvtsi32_si128(packed), zero);
    return _mm_cvtepi32_ps(_mm_unpacklo_epi16(words, zero));
}
