// Joining two pictures by two points marked in each.
#pragma once

#include "compose/paste.h"
#include "frame/progress.h"

namespace qv8 {

struct PanoramaOptions {
    BYTE seamMode; // 1 and 2 paste one side of the line through the points of the added picture
    POINT base1;   // all counted from the top
    POINT base2;
    POINT added1;
    POINT added2;
    TransparentColour transparent;
};

// A new 24-bit picture. 0 with status 1, 2, 3, 5 or 7 set when it fails.
HGLOBAL JoinPanorama(HGLOBAL baseImage, HGLOBAL addedImage, const PanoramaOptions& options, const Progress& progress);

} // namespace qv8
