#include "tone/curve_kernels.h"

#include "simd/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "tone/curve_kernels.inl"
} // namespace baseline

#include "simd/avx2_begin.h"
namespace avx2 {
#include "tone/curve_kernels.inl"
} // namespace avx2
#include "simd/avx2_end.h"

} // namespace

const CurveKernels& TheCurveKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
