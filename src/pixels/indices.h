// Palette indices in 1-, 4- and 8-bit rows, most significant bits first.
#pragma once

#include "platform/platform.h"

namespace qv8 {

// Unpacks `count` indices of a row from `column` on, which is a multiple of 8, into one byte each.
void UnpackIndices(int bitCount, const BYTE* row, int column, int count, BYTE* indices);

// The same from any column: there is room for 7 indices more, and the result tells where the first one stands.
const BYTE* UnpackFrom(int bitCount, const BYTE* row, int column, int count, BYTE* indices);

// Packs `count` indices into a row from `column` on, which is a multiple of 8; each has no bits beyond the depth.
// Pixels after the last one in its byte become 0.
void PackIndices(int bitCount, const BYTE* indices, int count, BYTE* row, int column);

} // namespace qv8
