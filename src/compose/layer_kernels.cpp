#include "compose/layer_kernels.h"

#include "simd/target.h"

namespace qv8 {
namespace {

constexpr int kBlockBytes = 96; // whole pixels and whole vectors
constexpr int kBlockPixels = kBlockBytes / 3;

// For each byte of a block, which of the bytes around it belong to other pixels and do not matter to its own: 0xFF.
struct OtherPixels {
    BYTE twoBefore[kBlockBytes];
    BYTE before[kBlockBytes];
    BYTE after[kBlockBytes];
    BYTE twoAfter[kBlockBytes];
};

constexpr OtherPixels FindOtherPixels() {
    OtherPixels other = {};
    for (int k = 0; k != kBlockBytes; ++k) {
        other.twoBefore[k] = k % 3 == 2 ? 0 : 0xFF;
        other.before[k] = k % 3 == 0 ? 0xFF : 0;
        other.after[k] = k % 3 == 2 ? 0xFF : 0;
        other.twoAfter[k] = k % 3 == 0 ? 0 : 0xFF;
    }
    return other;
}
constexpr OtherPixels kOther = FindOtherPixels();

namespace baseline {
#include "compose/layer_kernels.inl"
} // namespace baseline

#include "simd/avx2_begin.h"
namespace avx2 {
#include "compose/layer_kernels.inl"
} // namespace avx2
#include "simd/avx2_end.h"

} // namespace

const LayerKernels& TheLayerKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

} // namespace qv8
