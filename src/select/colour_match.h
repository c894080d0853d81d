// Which colours are close to a key colour.
#pragma once

#include "pixels/planar_chunks.h"

namespace qv8 {

// What is compared: all channels, the colour differences whatever the brightness, or the brightness.
enum class MatchMode : BYTE { kRgb, kColourDifferences, kBrightness };

// A colour matches when its distances from the key, summed over the components that are compared, reach no farther
// than `limit`.
struct ColourMatcher {
    MatchMode mode;
    BYTE components[3]; // of the key
    WORD limit;
};

// `tolerance` is the mean distance per component that still matches.
ColourMatcher MakeColourMatcher(MatchMode mode, const RGBQUAD& key, BYTE tolerance);

// Writes 1 for each of the chunk's first `count` colours that matches, else 0.
void MatchColours(const ColourMatcher& matcher, PlanarChunk& chunk, int count, BYTE* matches);

} // namespace qv8
