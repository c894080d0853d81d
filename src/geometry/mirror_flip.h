// Exchange of left and right, and of top and bottom, in place.
#pragma once

#include "frame/dib.h"
#include "frame/progress.h"

namespace qv8 {

// Both work on a picture of any depth and on its mask, when there is one (null else), report each row of the picture
// and return false with status 1 or 3 set when they did not finish; the pixels are worth nothing then.
bool MirrorDib(NewPicture& picture, NewPicture* mask, const Progress& progress);
bool FlipDib(NewPicture& picture, NewPicture* mask, const Progress& progress);

} // namespace qv8
