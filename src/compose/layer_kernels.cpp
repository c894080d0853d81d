#include "compose/layer_kernels.h"

#define QV8_KERNELS LayerKernels
#define QV8_KERNELS_FILE "compose/layer_kernels.inl"
#include "simd/each_target.h"
