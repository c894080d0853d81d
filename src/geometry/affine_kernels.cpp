#include "geometry/affine_kernels.h"

#include <immintrin.h>

#include "simd/target.h"

namespace qv8 {
namespace {

using FewInts = int __attribute__((vector_size(16))); // one for each double, and zeros where those are two

inline FewInts SpreadInts(int value) {
    return reinterpret_cast<FewInts>(_mm_set1_epi32(value));
}

namespace baseline {

constexpr int kDoubleLanes = 2;
using Doubles = __m128d;

inline Doubles SpreadDouble(double value) {
    return _mm_set1_pd(value);
}
inline Doubles SquareRoot(Doubles value) {
    return _mm_sqrt_pd(value);
}
inline FewInts TruncateDoubles(Doubles value) {
    return reinterpret_cast<FewInts>(_mm_cvttpd_epi32(value));
}
inline void StoreInts(int* ints, FewInts value) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(ints), reinterpret_cast<__m128i>(value));
}
#include "geometry/affine_kernels.inl"

} // namespace baseline

#include "simd/avx2_begin.h"
namespace avx2 {

constexpr int kDoubleLanes = 4;
using Doubles = __m256d;

inline Doubles SpreadDouble(double value) {
    return _mm256_set1_pd(value);
}
inline Doubles SquareRoot(Doubles value) {
    return _mm256_sqrt_pd(value);
}
inline FewInts TruncateDoubles(Doubles value) {
    return reinterpret_cast<FewInts>(_mm256_cvttpd_epi32(value));
}
inline void StoreInts(int* ints, FewInts value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(ints), reinterpret_cast<__m128i>(value));
}
#include "geometry/affine_kernels.inl"

} // namespace avx2
#include "simd/avx2_end.h"

} // namespace

const AffineKernels& TheAffineKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
