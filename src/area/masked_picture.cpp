#include "area/masked_picture.h"

#include "area/area.h"

namespace qv8 {

bool OpenMaskedPicture(const ImageSet& handles, MaskedPicture& picture) {
    if (!LockPicture(handles.hImage, picture.image) ||
        (handles.hMask != nullptr && !LockPicture(handles.hMask, picture.mask))) {
        return false;
    }
    DibView& image = picture.image.view;
    if (!CheckPicture(picture.image) || !CheckDibFormat(image, kAcceptAll)) {
        return false;
    }
    return !picture.mask.lock || (CheckPicture(picture.mask) && IsMaskSizeOf(image, picture.mask.view));
}

} // namespace qv8
