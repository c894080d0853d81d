#include "tone/ycc_kernels.h"

#include "frame/target.h"

namespace qv8 {
namespace {

namespace baseline {
#include "tone/ycc_kernels.inl"
} // namespace baseline

#include "frame/avx2_begin.h"
namespace avx2 {
#include "tone/ycc_kernels.inl"
} // namespace avx2
#include "frame/avx2_end.h"

} // namespace

const YccKernels& TheYccKernels() {
    return PickKernels(baseline::kKernels, avx2::kKernels);
}

RGBQUAD FromYcc(float y, float cr, float cb) {
    return {baseline::BackBlue(y, cb), baseline::BackGreen(y, cr, cb), baseline::BackRed(y, cr), 0};
}

} // namespace qv8
