#include "geometry/affine_kernels.h"

#define QV8_KERNELS AffineKernels
#define QV8_KERNELS_FILE "geometry/affine_kernels.inl"
#include "simd/each_target.h"
