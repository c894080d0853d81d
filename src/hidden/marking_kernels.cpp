#include "hidden/marking_kernels.h"

#include <immintrin.h>

#include <cstring>

#include "frame/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "frame/lanes_sse2.inl"
#include "frame/ycc_lanes.inl"
#include "hidden/marking_kernels.inl"
} // namespace baseline

#include "frame/avx2_begin.h"
namespace avx2 {
#include "frame/lanes_avx2.inl"
#include "frame/ycc_lanes.inl"
#include "hidden/marking_kernels.inl"
} // namespace avx2
#include "frame/avx2_end.h"

} // namespace

const MarkingKernels& TheMarkingKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
