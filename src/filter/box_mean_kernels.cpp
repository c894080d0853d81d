#include "filter/box_mean_kernels.h"

#include "simd/fixed_reciprocal.h"

#define QV8_KERNELS BoxMeanKernels
#define QV8_KERNELS_FILE "filter/box_mean_kernels.inl"
#include "simd/each_target.h"
