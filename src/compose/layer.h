// Laying one picture over another.
#pragma once

#include "compose/layer_kernels.h"
#include "frame/progress.h"
#include "pixels/dib.h"

namespace qv8 {

struct LayerPlacement {
    int x; // left edge of the layer in the base
    int y; // top edge, counted from the base's top
    bool clipToBase;
};

// A new 24-bit picture. `background` is blue, green, red. 0 with the status set when it fails: 7 for a zero handle, 4
// for a picture that is not accepted.
HGLOBAL Layer(HGLOBAL base, HGLOBAL layer, const LayerBlend& blend, const BYTE (&background)[3],
              const LayerPlacement& placement, const Progress& progress);

} // namespace qv8
