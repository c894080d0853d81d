#include "geometry/resize_kernels.h"

#include "frame/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "geometry/resize_kernels.inl"
} // namespace baseline

#include "frame/avx2_begin.h"
namespace avx2 {
#include "geometry/resize_kernels.inl"
} // namespace avx2
#include "frame/avx2_end.h"

} // namespace

const ResizeKernels& TheResizeKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
