// Pictures from nothing, and copies.
#pragma once

#include "pixels/dib.h"

namespace qv8 {

// A picture of one colour. Sizes below 1 count as 1; another depth leaves status 4.
HGLOBAL CreateImage(int width, int height, int bitDepth, BYTE red, BYTE green, BYTE blue, DWORD progressOwner);

// An exact copy.
HGLOBAL CopyImage(HGLOBAL image, DWORD progressOwner);

} // namespace qv8
