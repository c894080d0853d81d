#include "pixels/pixel_kernels.h"

#define QV8_KERNELS PixelKernels
#define QV8_KERNELS_FILE "pixels/pixel_kernels.inl"
#include "simd/each_target.h"
