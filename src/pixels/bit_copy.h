// Copies of pixels that are less than a byte, from any place in a row to any other.
#pragma once

#include <cstddef>

#include "platform/platform.h"

namespace qv8 {

// Copies `count` bits, the most significant bit of a byte being its first, between rows that do not overlap. The other
// bits of the bytes that are touched stay as they are, and no byte without a bit of the run is read or written.
void CopyBits(const BYTE* source, std::size_t sourceBit, BYTE* result, std::size_t resultBit, std::size_t count);

} // namespace qv8
