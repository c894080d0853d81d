#include "geometry/rotation_kernels.h"

#include <immintrin.h>

#include "simd/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "simd/lanes_sse2.inl"

#include "geometry/rotation_kernels.inl"
} // namespace baseline

#include "simd/avx2_begin.h"
namespace avx2 {
#include "simd/lanes_avx2.inl"

#include "geometry/rotation_kernels.inl"
} // namespace avx2
#include "simd/avx2_end.h"

} // namespace

const RotationKernels& TheRotationKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
