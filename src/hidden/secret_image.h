// A pattern hidden in the luminance of a picture, and the way to find it again.
#pragma once

#include "frame/progress.h"
#include "hidden/text_pattern.h"
#include "qv8effect.h"

namespace qv8 {

// What to hide and where. All four sides bound a text; a pattern's upper left corner is at (left, top).
struct SecretMark {
    HGLOBAL pattern; // 1 bit; null for the text
    LPCSTR text;     // read as far as needed to find it too long, and so is the face name
    LPCSTR faceName;
    TextStyle style;
    RECT rect; // rows counted from the top
};

HGLOBAL SetSecretImage(HGLOBAL image, const SecretMark& mark, int strength, const Progress& progress);

HGLOBAL CheckSecretImage(HGLOBAL unmarked, HGLOBAL marked, int threshold, const Progress& progress);

} // namespace qv8
