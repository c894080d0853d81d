// Conversions that have to choose colours: to 1, 4 and 8 bits, and from true colour to grey.
#pragma once

#include "frame/progress.h"
#include "pixels/dib.h"

namespace qv8 {

struct ReductionOptions {
    int depth; // 1, 4, 8 or QV8_DEPTH_GREY
    bool fixedPalette;
    bool dither;
    BYTE threshold; // of 1-bit results
};

// Returns a new picture, or 0 with its status set.
HGLOBAL ReduceColours(const DibView& source, const ReductionOptions& options, const Progress& progress);

} // namespace qv8
