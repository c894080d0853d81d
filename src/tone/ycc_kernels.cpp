#include "tone/ycc_kernels.h"

#include <immintrin.h>

#include <cstring>

#include "simd/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "simd/lanes_sse2.inl"

#include "pixels/ycc_lanes.inl"

#include "tone/ycc_kernels.inl"
} // namespace baseline

#include "simd/avx2_begin.h"
namespace avx2 {
#include "simd/lanes_avx2.inl"

#include "pixels/ycc_lanes.inl"

#include "tone/ycc_kernels.inl"
} // namespace avx2
#include "simd/avx2_end.h"

} // namespace

const YccKernels& TheYccKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

RGBQUAD FromYcc(float y, float cr, float cb) {
    const baseline::Colours colours = baseline::Back(baseline::Spread(y), baseline::Spread(cr), baseline::Spread(cb));
    BYTE bytes[3][baseline::kLanes];
    baseline::StoreBytes(bytes[0], colours.blue);
    baseline::StoreBytes(bytes[1], colours.green);
    baseline::StoreBytes(bytes[2], colours.red);
    return {bytes[0][0], bytes[1][0], bytes[2][0], 0};
}

} // namespace qv8
