// Laying 24-bit pixels over others.
#pragma once

#include "platform/platform.h"

namespace qv8 {

struct LayerBlend {
    BYTE opacity;        // 0 leaves the base, 255 replaces it
    BYTE transparent[3]; // blue, green, red: layer pixels of this colour leave the base
};

struct LayerKernels {
    // Lays `count` packed pixels over those of the result.
    void (*blend24)(const LayerBlend& blend, const BYTE* layer, BYTE* result, int count);
    // Lays levels of a channel over those of the result.
    void (*blendLevels)(BYTE opacity, const BYTE* layer, BYTE* result, int count);
};

const LayerKernels& TheLayerKernels();

} // namespace qv8
