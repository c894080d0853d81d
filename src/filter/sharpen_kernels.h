// The inner loops of sharpening; they run beyond `count`, up to kFilterSlack.
#pragma once

#include "pixels/pixel_kernels.h"

namespace qv8 {

struct SharpenKernels {
    // rowCount * 3 times each sample of `centre`, less the sum of its 3 columns in the rows.
    void (*differences)(const BYTE* const* rows, int rowCount, const BYTE* centre, int count, short* result);
    // Grey levels: the centre plus strength times the difference.
    void (*grey)(float strength, const BYTE* centre, const short* differences, int count, BYTE* result);
    // Colours whose luminance is changed so, their colour differences kept.
    void (*colours)(float strength, const BYTE* luminance, const short* differences, const PlanarRow& source, int count,
                    const PlanarRow& result);
};

const SharpenKernels& TheSharpenKernels();

} // namespace qv8
