#include "geometry/resize_kernels.h"

#define QV8_KERNELS ResizeKernels
#define QV8_KERNELS_FILE "geometry/resize_kernels.inl"
#include "simd/each_target.h"
