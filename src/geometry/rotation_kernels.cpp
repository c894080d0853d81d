#include "geometry/rotation_kernels.h"

#define QV8_KERNELS RotationKernels
#define QV8_KERNELS_FILE "geometry/rotation_kernels.inl"
#include "simd/each_target.h"
