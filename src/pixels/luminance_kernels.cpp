#include "pixels/luminance_kernels.h"

#include "pixels/ycc_weights.h"

#define QV8_KERNELS LuminanceKernels
#define QV8_KERNELS_FILE "pixels/luminance_kernels.inl"
#include "simd/each_target.h"

namespace qv8 {

BYTE LuminanceOf(const RGBQUAD& colour) {
    RGBQUAD channels = colour;
    BYTE result = 0;
    baseline::Luminance({&channels.rgbBlue, &channels.rgbGreen, &channels.rgbRed}, &result, 1);
    return result;
}

BYTE GreyLevelOf(const RGBQUAD& colour) {
    const BYTE pixel[3] = {colour.rgbBlue, colour.rgbGreen, colour.rgbRed};
    return baseline::GreyLevelOfPixel(pixel);
}

} // namespace qv8
