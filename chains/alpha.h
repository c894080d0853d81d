// Alpha: the fourth bytes of 32-bit pictures, which effects keep or clear but do not know.
#ifndef QV8_CHAINS_ALPHA_H
#define QV8_CHAINS_ALPHA_H

#include "pictures/picture.h"

// Whether it has 32 bits and any fourth byte is not 0.
bool HasAlpha(const Picture& picture);

// The fourth bytes of a 32-bit picture as a picture of grey levels.
Picture AlphaOf(const Picture& picture);

// Sets the fourth bytes of a 32-bit picture from a picture of grey levels of the same size.
void SetAlpha(const Picture& picture, const Picture& alpha);

bool AreOfOneSize(const Picture& picture, const Picture& other);

#endif
