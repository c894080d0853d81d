// Pasting a turned picture through its mask.
#pragma once

#include "compose/paste_pixels.h"
#include "frame/progress.h"

namespace qv8 {

struct PasteOptions {
    int angle; // hundredths of a degree
    bool mirror;
    bool flip;
    BYTE opacity;
    TransparentColour transparent;
    int x; // where the middle of the turned picture lies in the base
    int y; // counted from the top
    bool smooth;
};

// The colour that three pointers name, when all are given.
TransparentColour TransparentColourAt(const BYTE* red, const BYTE* green, const BYTE* blue);

// A new picture of the base's format. 0 with status 1, 3 or 7 set when it fails.
HGLOBAL PasteImage(HGLOBAL baseImage, const ImageSet& pastedImages, const PasteOptions& wanted, const Progress& whole);

} // namespace qv8
