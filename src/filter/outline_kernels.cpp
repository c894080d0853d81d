#include "filter/outline_kernels.h"

#include <immintrin.h>

#include "frame/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "frame/lanes_sse2.inl"

#include "filter/outline_kernels.inl"
} // namespace baseline

#include "frame/avx2_begin.h"
namespace avx2 {
#include "frame/lanes_avx2.inl"

#include "filter/outline_kernels.inl"
} // namespace avx2
#include "frame/avx2_end.h"

} // namespace

const OutlineKernels& TheOutlineKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
