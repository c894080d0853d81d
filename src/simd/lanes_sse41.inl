// The lanes of an x86 processor with SSE4.1, which has the byte shuffle of SSSE3 too.

#include "simd/lanes_x86.inl"

constexpr bool kHasByteShuffle = true;

// Within each 16 bytes the byte at each place, or 0 for a place from 128 on.
inline Bytes ShuffleBytes(Bytes value, Bytes places) {
    return reinterpret_cast<Bytes>(
        _mm_shuffle_epi8(reinterpret_cast<__m128i>(value), reinterpret_cast<__m128i>(places)));
}

inline Floats LoadBytesAsFloats(const BYTE* bytes) {
    int packed;
    __builtin_memcpy(&packed, bytes, sizeof packed);
    return _mm_cvtepi32_ps(_mm_cvtepu8_epi32(_mm_cvtsi32_si128(packed)));
}
