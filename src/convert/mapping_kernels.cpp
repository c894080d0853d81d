#include "convert/mapping_kernels.h"

#define QV8_KERNELS MappingKernels
#define QV8_KERNELS_FILE "convert/mapping_kernels.inl"
#include "simd/each_target.h"
