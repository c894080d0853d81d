// Working through a run of pixels in parts whose planar channels stay in the first-level cache.
#pragma once

#include "frame/parts.h"
#include "pixels/pixel_kernels.h"

namespace qv8 {

constexpr int kChunkPixels = 1024; // a multiple of 8, so that parts of 1- and 4-bit rows begin on a byte

struct PlanarChunk {
    BYTE blue[kChunkPixels];
    BYTE green[kChunkPixels];
    BYTE red[kChunkPixels];

    PlanarRow Row() {
        return {blue, green, red};
    }
};

// Runs use(start, count) over 0..total in parts.
template <class Use>
void ForEachChunk(int total, Use use) {
    ForEachPart(total, kChunkPixels, use);
}

} // namespace qv8
