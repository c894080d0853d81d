// Pictures from nothing, and copies.
#pragma once

#include "frame/progress.h"
#include "pixels/dib.h"

namespace qv8 {

// A picture of one colour. Sizes below 1 count as 1; another depth leaves status 4.
HGLOBAL CreateImage(int width, int height, int bitDepth, BYTE red, BYTE green, BYTE blue, const Progress& progress);

// An exact copy.
HGLOBAL CopyImage(HGLOBAL image, const Progress& progress);

} // namespace qv8
