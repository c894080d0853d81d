#include "pixels/pixel_kernels.h"

#include "simd/target.h"

namespace qv8 {
namespace {

constexpr unsigned kWiden5Factor = 2106;
constexpr unsigned kWiden5Shift = 8;
constexpr unsigned kWiden6Factor = 49; // value * 85 / 21 is value * 4 + value / 21
constexpr unsigned kWiden6Shift = 10;
constexpr unsigned kNarrow5Factor = 249;
constexpr unsigned kNarrow5Shift = 11;
constexpr unsigned kNarrow6Factor = 253;
constexpr unsigned kNarrow6Shift = 10;

constexpr bool FactorsAreExact() {
    bool exact = true;
    for (unsigned v = 0; v != 64; ++v) {
        exact = exact && (v > 31 || (v * kWiden5Factor <= 0xFFFF && (v * kWiden5Factor >> kWiden5Shift) == Widen5(v)));
        exact = exact && v * 4 + (v * kWiden6Factor >> kWiden6Shift) == Widen6(v);
    }
    for (unsigned v = 0; v != 256; ++v) {
        exact = exact && v * kNarrow5Factor <= 0xFFFF && (v * kNarrow5Factor >> kNarrow5Shift) == Narrow5(v);
        exact = exact && v * kNarrow6Factor <= 0xFFFF && (v * kNarrow6Factor >> kNarrow6Shift) == Narrow6(v);
    }
    return exact;
}
static_assert(FactorsAreExact());

namespace baseline {
constexpr bool kHasByteShuffle = false;
#include "pixels/pixel_kernels.inl"
} // namespace baseline

#include "simd/avx2_begin.h"
namespace avx2 {
constexpr bool kHasByteShuffle = true;
#include "pixels/pixel_kernels.inl"
} // namespace avx2
#include "simd/avx2_end.h"

} // namespace

const PixelKernels& ThePixelKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
