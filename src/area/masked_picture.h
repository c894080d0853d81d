// A picture and the mask that goes with it.
#pragma once

#include "pixels/dib.h"

namespace qv8 {

struct MaskedPicture {
    Picture image;
    Picture mask; // not locked when there is none

    const DibView* Mask() const {
        return mask.lock ? &mask.view : nullptr;
    }
};

// Opens a picture of any depth and its mask, when the pair has one. Sets status 3 or 7 when it fails.
bool OpenMaskedPicture(const ImageSet& handles, MaskedPicture& picture);

} // namespace qv8
