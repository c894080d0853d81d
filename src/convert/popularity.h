// A colour table of 16 colours from the ones that a palette picture uses most.
#pragma once

#include "frame/progress.h"
#include "pixels/colour_reader.h"

namespace qv8 {

// Fills `palette` with 16 colours, the most used first; each is the last pixel scanned of its cell. Reports over 0..10
// percent. False with status 1 or 3 when it fails.
bool PickPopular(const ColourReader& reader, const PlanarRow& rowBuffer, RGBQUAD* palette, const Progress& progress);

} // namespace qv8
