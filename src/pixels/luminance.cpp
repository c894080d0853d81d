#include "pixels/luminance.h"

#include <immintrin.h>

#include <cstring>

#include "simd/target.h"

namespace qv8 {
namespace {

constexpr float kRed = 0.299F;
constexpr float kGreen = 0.587F;
constexpr float kBlue = 0.114F;

namespace baseline {
#include "simd/lanes_sse2.inl"

#include "pixels/luminance.inl"
constexpr LuminanceKernels kKernels = {Luminance, GreyLevel, nullptr};
} // namespace baseline

#include "simd/avx2_begin.h"
namespace avx2 {
#include "simd/lanes_avx2.inl"

#include "pixels/luminance.inl"
#include "pixels/luminance_avx2.inl"
} // namespace avx2
#include "simd/avx2_end.h"

BYTE OfOne(void (*kernel)(const PlanarRow& row, BYTE* result, int count), RGBQUAD colour) {
    BYTE result = 0;
    kernel({&colour.rgbBlue, &colour.rgbGreen, &colour.rgbRed}, &result, 1);
    return result;
}

} // namespace

const LuminanceKernels& TheLuminanceKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

BYTE LuminanceOf(const RGBQUAD& colour) {
    return OfOne(baseline::Luminance, colour);
}

BYTE GreyLevelOf(const RGBQUAD& colour) {
    return OfOne(baseline::GreyLevel, colour);
}

} // namespace qv8
