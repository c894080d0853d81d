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

// QV8SetSecretImage, for 24-bit pictures. `strength` is what is added to the luminance of marked pixels, in levels,
// below 0 to darken. Statuses as frame/status.h has them: 5 for no text or one that is too long, 9 when it cannot be
// drawn, 2 when there is nothing to draw on.
HGLOBAL SetSecretImage(HGLOBAL image, const SecretMark& mark, int strength, const Progress& progress);

// QV8CheckSecretImage. Returns a 1-bit picture of the size of both, white where the luminance of `marked` is
// `threshold` levels or more above that of `unmarked`. Statuses 1, 3 and 7, which stands for different sizes too.
HGLOBAL CheckSecretImage(HGLOBAL unmarked, HGLOBAL marked, int threshold, const Progress& progress);

} // namespace qv8
