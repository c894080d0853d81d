// Text as a pattern of bits.
#pragma once

#include "platform/platform.h"

namespace qv8 {

struct TextStyle {
    int pointSize;
    bool bold;
    bool italic;
    bool underline; // this and `strikeOut` of a single horizontal line only
    bool strikeOut;
    bool vertical; // characters below one another, columns from right to left
    int angle;     // 90, 180 or 270 degrees anticlockwise; any other counts as 0
};

// Draws the text into a 1-bit picture made by NewMask; its bits become 1. The text begins in the corner of the picture
// where reading begins at its angle, and what leaves the picture is cut. Sets status 2 (no canvas to draw on), 3 or 9
// when it fails.
bool DrawTextPattern(HGLOBAL pattern, const char* text, const char* faceName, const TextStyle& style);

} // namespace qv8
