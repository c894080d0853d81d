#include "hidden/marking_kernels.h"

#include "pixels/ycc_weights.h"

#define QV8_KERNELS MarkingKernels
#define QV8_KERNELS_FILE "hidden/marking_kernels.inl"
#include "simd/each_target.h"
