#include "filter/sharpen_kernels.h"

#include <immintrin.h>

#include <cstddef>

#include "simd/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "simd/lanes_sse2.inl"

#include "pixels/ycc_lanes.inl"

#include "filter/sharpen_kernels.inl"
} // namespace baseline

#include "simd/avx2_begin.h"
namespace avx2 {
#include "simd/lanes_avx2.inl"

#include "pixels/ycc_lanes.inl"

#include "filter/sharpen_kernels.inl"
} // namespace avx2
#include "simd/avx2_end.h"

} // namespace

const SharpenKernels& TheSharpenKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
