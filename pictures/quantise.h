// Fewer colours chosen for the eye. The exported conversion does not use it: its colours are part of what it promises.
#ifndef QV8_PICTURES_QUANTISE_H
#define QV8_PICTURES_QUANTISE_H

#include "pictures/picture.h"

// Whether this build has the library that the choice begins with.
bool CanQuantise();

// A picture of 1, 4 or 8 bits, the fewest that hold `colours` (2 to 256) of the best, each pixel the nearest of them,
// or with `dither` errors passed on to its neighbours. A picture of no more colours keeps them. Alpha is left out.
// Throws a Failure with kExitEffectFailed when the picture cannot be converted, or this build lacks the library.
Picture Quantise(const Picture& picture, unsigned colours, bool dither);

#endif
