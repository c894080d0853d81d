// The inner loops of mapping colours to a colour table.
#pragma once

#include "convert/mapping.h"

namespace qv8 {

// What the ways of choosing an index need to know, all of them together.
struct IndexChoice {
    unsigned least;         // white: the smallest sum of the channels
    BYTE level[256];        // the nearest of six levels
    const BYTE* inverseMap; // of the boxes, by six bits of each channel
    int blueAndGreen[16];   // of 16 colours: blue in the lower half
    int red[16];
};

// Blue, green, red and nothing, twice over, so that two weights are applied at once.
using ColourTwice = short[8];

struct MappingKernels {
    using MapRow = void (*)(const IndexChoice& choice, const MappingRows& rows, int width);
    // In scan direction `step`; the palette matters to no black and white result.
    using DitherRow = void (*)(const IndexChoice& choice, const ColourTwice* palette, const MappingRows& rows,
                               int width, int step);

    MapRow mapRow[4];          // for each ChooseBy but the threshold, which has kernels of its own
    DitherRow ditherRow[2][4]; // where the errors of the row above are replaced, and where they are kept
};

const MappingKernels& TheMappingKernels();

} // namespace qv8
