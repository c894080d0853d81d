#include "filter/sharpen_kernels.h"

#include "pixels/ycc_weights.h"

#define QV8_KERNELS SharpenKernels
#define QV8_KERNELS_FILE "filter/sharpen_kernels.inl"
#include "simd/each_target.h"
