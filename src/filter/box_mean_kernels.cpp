#include "filter/box_mean_kernels.h"

#include <immintrin.h>

#include <cstddef>

#include "frame/fixed_reciprocal.h"
#include "frame/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "frame/lanes_sse2.inl"

#include "filter/box_mean_kernels.inl"
} // namespace baseline

#include "frame/avx2_begin.h"
namespace avx2 {
#include "frame/lanes_avx2.inl"

#include "filter/box_mean_kernels.inl"
} // namespace avx2
#include "frame/avx2_end.h"

} // namespace

const BoxMeanKernels& TheBoxMeanKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
