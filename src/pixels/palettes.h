// Colour tables that the library makes itself, and the search for the entry nearest to a colour.
#pragma once

#include "platform/platform.h"

namespace qv8 {

constexpr int kMostFixedColours = 216;

// Writes the fixed table of a depth and returns its length:
// 1 bit: black and white;
// 4 bits: black, white, greys and the pure colours at two strengths, the dark ones at 127, light grey at 192;
// 8 bits: six levels of each channel, entry 36 b + 6 g + r having the levels 51 b, 51 g, 51 r;
// any other: none.
int WriteFixedPalette(int bitCount, RGBQUAD* palette);

// `count` greys from black to white: (i * 255) / (count - 1).
void WriteGreyRamp(RGBQUAD* palette, int count);

// Index of the entry with the smallest squared distance, the first of equal ones; 0 for an empty table.
int NearestEntry(const RGBQUAD* palette, int count, BYTE red, BYTE green, BYTE blue);

} // namespace qv8
