#include "hidden/marking_kernels.h"

#include <immintrin.h>

#include <cstring>

#include "simd/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "simd/lanes_sse2.inl"

#include "pixels/ycc_lanes.inl"

#include "hidden/marking_kernels.inl"
} // namespace baseline

#include "simd/avx2_begin.h"
namespace avx2 {
#include "simd/lanes_avx2.inl"

#include "pixels/ycc_lanes.inl"

#include "hidden/marking_kernels.inl"
} // namespace avx2
#include "simd/avx2_end.h"

} // namespace

const MarkingKernels& TheMarkingKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
