#include "filter/outline_kernels.h"

#define QV8_KERNELS OutlineKernels
#define QV8_KERNELS_FILE "filter/outline_kernels.inl"
#include "simd/each_target.h"
