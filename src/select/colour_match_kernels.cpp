#include "select/colour_match_kernels.h"

#include "pixels/ycc_weights.h"

#define QV8_KERNELS ColourMatchKernels
#define QV8_KERNELS_FILE "select/colour_match_kernels.inl"
#include "simd/each_target.h"
