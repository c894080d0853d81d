#include "filter/smoothing_kernels.h"

#define QV8_KERNELS SmoothingKernels
#define QV8_KERNELS_FILE "filter/smoothing_kernels.inl"
#include "simd/each_target.h"
