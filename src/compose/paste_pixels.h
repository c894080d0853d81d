// The colours of pasted pixels: what is seen of the picture, blended with the base and brought to its format.
#pragma once

#include "compose/paste_placement.h"
#include "pixels/colour_reader.h"
#include "pixels/nearest_colours.h"

namespace qv8 {

// Pixels of this colour let the base show, when one is given.
struct TransparentColour {
    bool isGiven = false;
    BYTE red = 0;
    BYTE green = 0;
    BYTE blue = 0;
};

struct Pasting {
    PastePlacement placement;
    ColourReader base;
    ColourReader pasted;
    const DibView* mask; // null without one
    PixelUnit unit;
    PixelUnit maskUnit;
    NearestColours nearest; // of a base with a colour table
    TransparentColour transparent;
    BYTE opacity;
    bool smooth;
    bool copies; // pixels become the base's as they are
    bool packs;  // all bytes of a pixel are laid over the base's alike, and none are hidden
};

// Lays a row that is one of the lines over the base's in the row of the result, where all bytes of a pixel are laid
// alike.
void PasteLine(const Pasting& pasting, const PasteLines& lines, int row, BYTE* resultRow);

// Lays columns of a row, all of them covered, over the base's in the row of the result. False when memory is short; the
// status is set.
bool PastePixels(Pasting& pasting, int row, const Span& columns, BYTE* resultRow);

} // namespace qv8
