// Turns by whole quarters: every pixel is copied.
#pragma once

#include "frame/progress.h"
#include "geometry/turned_picture.h"

namespace qv8 {

constexpr bool IsSideways(int quarters) {
    return quarters % 2 != 0;
}

// Turns by 0 to 3 quarters counter-clockwise. A result of the source's own size gets the turned picture in its middle
// when the options ask to keep the size. False when cancelled.
bool TurnQuarters(TurnedPicture& image, TurnedPicture* mask, int quarters, const RotationOptions& options,
                  const Progress& progress);

} // namespace qv8
