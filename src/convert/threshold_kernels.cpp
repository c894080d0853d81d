#include "convert/threshold_kernels.h"

#define QV8_KERNELS ThresholdKernels
#define QV8_KERNELS_FILE "convert/threshold_kernels.inl"
#include "simd/each_target.h"
