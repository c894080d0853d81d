// Colour reduction the slow, obvious way: every box is counted cell by cell, every error is an int in a row of its own.
#pragma once

#include "support/picture.h"

namespace test {

struct ReductionCase {
    int depth; // 1, 4, 8 or QV8_DEPTH_GREY
    bool fixedPalette;
    bool dither;
    BYTE threshold;
};

Picture SlowlyReduced(const Picture& source, const ReductionCase& reduction);

} // namespace test
