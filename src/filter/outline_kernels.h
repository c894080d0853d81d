// The inner loops of outlines; they run beyond `count`, up to kFilterSlack.
#pragma once

#include "platform/platform.h"

namespace qv8 {

struct OutlineKernels {
    // Lengths of gradients times the gain, truncated and at most 255. The rows are those below, at and above.
    using Gradient = void (*)(const BYTE* below, const BYTE* own, const BYTE* above, float gain, int count,
                              BYTE* result);

    Gradient difference;
    Gradient roberts;
    Gradient sobel;
};

const OutlineKernels& TheOutlineKernels();

} // namespace qv8
