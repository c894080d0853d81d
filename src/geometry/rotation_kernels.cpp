#include "geometry/rotation_kernels.h"

#include <immintrin.h>

#include "frame/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "frame/lanes_sse2.inl"
#include "geometry/rotation_kernels.inl"
} // namespace baseline

#include "frame/avx2_begin.h"
namespace avx2 {
#include "frame/lanes_avx2.inl"
#include "geometry/rotation_kernels.inl"
} // namespace avx2
#include "frame/avx2_end.h"

} // namespace

const RotationKernels& TheRotationKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
