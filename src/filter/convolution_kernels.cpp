#include "filter/convolution_kernels.h"

#include "filter/convolution.h"

#define QV8_KERNELS ConvolutionKernels
#define QV8_KERNELS_FILE "filter/convolution_kernels.inl"
#include "simd/each_target.h"
