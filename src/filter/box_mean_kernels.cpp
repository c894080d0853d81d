#include "filter/box_mean_kernels.h"

#include <immintrin.h>

#include <cstddef>

#include "frame/target.h"

namespace qv8 {
namespace {

// Quotients of sums up to 255 * divisor as the upper half of a product, shifted.
struct FixedReciprocal {
    int factor = 0;
    int shift = 0;
    bool exact = false; // for every such sum
};

// The factor is 2^(16 + shift) / divisor, rounded up by less than `excess` / divisor; quotients stay exact as long as
// the sum times the excess is below 2^(16 + shift).
FixedReciprocal MakeFixedReciprocal(int divisor) {
    FixedReciprocal result;
    while ((2 << result.shift) < divisor) {
        ++result.shift;
    }
    const int power = 0x10000 << result.shift;
    result.factor = (power + divisor - 1) / divisor;
    const int excess = result.factor * divisor - power;
    result.exact = result.factor <= 0xFFFF && 255 * divisor * excess < power;
    return result;
}

namespace baseline {
#include "frame/lanes_sse2.inl"

#include "filter/box_mean_kernels.inl"
} // namespace baseline

#include "frame/avx2_begin.h"
namespace avx2 {
#include "frame/lanes_avx2.inl"

#include "filter/box_mean_kernels.inl"
} // namespace avx2
#include "frame/avx2_end.h"

} // namespace

const BoxMeanKernels& TheBoxMeanKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
