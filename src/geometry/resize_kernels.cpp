#include "geometry/resize_kernels.h"

#include <immintrin.h>

#include <cstddef>

#include "simd/target.h"

namespace qv8 {
namespace {

using Pixel = int __attribute__((vector_size(16)));
using PixelOfFloats = float __attribute__((vector_size(16)));
using PixelOfBytes = BYTE __attribute__((vector_size(4)));

namespace baseline {
#include "geometry/resize_kernels.inl"
} // namespace baseline

#include "simd/avx2_begin.h"
namespace avx2 {
#include "geometry/resize_kernels.inl"
} // namespace avx2
#include "simd/avx2_end.h"

} // namespace

const ResizeKernels& TheResizeKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
