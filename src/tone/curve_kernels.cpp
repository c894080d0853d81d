#include "tone/curve_kernels.h"

#define QV8_KERNELS CurveKernels
#define QV8_KERNELS_FILE "tone/curve_kernels.inl"
#include "simd/each_target.h"
