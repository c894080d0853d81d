// A colour table from a picture's own colours: boxes of the colour space, halved again and again where the pixels are.
#pragma once

#include "convert/histogram.h"
#include "frame/progress.h"

namespace qv8 {

// Fills `palette` with `boxCount` (16 or 256) colours, and `inverseMap`, one byte for each of the kCells cells, with
// the index of the box that a cell lies in (0 where it lies in none). The histogram is accumulated. Splitting reports
// over 30..60 percent, the boxes over 60..70. False when cancelled.
bool CutMedian(const Histogram& histogram, int boxCount, RGBQUAD* palette, BYTE* inverseMap, const Progress& progress);

} // namespace qv8
