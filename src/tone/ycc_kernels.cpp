#include "tone/ycc_kernels.h"

#include "pixels/ycc_weights.h"
#include "tone/gamma_curve.h"

#define QV8_KERNELS YccKernels
#define QV8_KERNELS_FILE "tone/ycc_kernels.inl"
#include "simd/each_target.h"

namespace qv8 {

RGBQUAD FromYcc(float y, float cr, float cb) {
    const baseline::Colours colours =
        baseline::Back(baseline::Broadcast(y), baseline::Broadcast(cr), baseline::Broadcast(cb));
    BYTE bytes[3][baseline::kLanes];
    baseline::StoreFloatsAsBytes(bytes[0], colours.blue);
    baseline::StoreFloatsAsBytes(bytes[1], colours.green);
    baseline::StoreFloatsAsBytes(bytes[2], colours.red);
    return {bytes[0][0], bytes[1][0], bytes[2][0], 0};
}

} // namespace qv8
