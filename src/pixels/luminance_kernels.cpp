#include "pixels/luminance_kernels.h"

#include "pixels/ycc_weights.h"

#define QV8_KERNELS LuminanceKernels
#define QV8_KERNELS_FILE "pixels/luminance_kernels.inl"
#include "simd/each_target.h"

namespace qv8 {
namespace {

BYTE OfOne(void (*kernel)(const PlanarRow& row, BYTE* result, int count), RGBQUAD colour) {
    BYTE result = 0;
    kernel({&colour.rgbBlue, &colour.rgbGreen, &colour.rgbRed}, &result, 1);
    return result;
}

} // namespace

BYTE LuminanceOf(const RGBQUAD& colour) {
    return OfOne(baseline::Luminance, colour);
}

BYTE GreyLevelOf(const RGBQUAD& colour) {
    return OfOne(baseline::GreyLevel, colour);
}

} // namespace qv8
