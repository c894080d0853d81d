// The arithmetic of straightening, several pixels at a time.
#pragma once

#include "geometry/affine_mapping.h"

namespace qv8 {

constexpr int kScatterPixels = 512; // worked on at once; a multiple of 4

// Where pixels of the source are written: negative columns are nowhere. Rows count from the bottom.
struct ScatterPlaces {
    int columns[kScatterPixels];
    int rows[kScatterPixels];
};

struct AffineKernels {
    // The places of `count` pixels of row y of the source from column x on.
    void (*findPlaces)(const Patch& patch, int x, int y, int count, ScatterPlaces& places);
};

const AffineKernels& TheAffineKernels();

} // namespace qv8
