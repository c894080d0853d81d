// The nearest entries of a picture's colour table, each colour searched for once.
#pragma once

#include "pixels/dib.h"

namespace qv8 {

// Colours that were asked for and their entries, in a hash table that grows.
struct NearestColours {
    const RGBQUAD* palette = nullptr;
    int entries = 0;
    LockedBlock memory; // of `slots` keys, a colour plus 1 or 0 for none, and as many entries
    std::uint32_t slots = 0;
    std::uint32_t used = 0;
};

// For a picture with a colour table. Sets status 3 when memory is short.
bool MakeNearestColours(const DibView& picture, NearestColours& nearest);

// Finds the entry nearest to a colour, the first of equal ones, among those that a pixel can hold. Sets status 3 when
// memory is short.
bool FindNearest(NearestColours& nearest, BYTE red, BYTE green, BYTE blue, BYTE& entry);

} // namespace qv8
