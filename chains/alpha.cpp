#include "chains/alpha.h"

#include "pictures/codec.h"

bool HasAlpha(const Picture& picture) {
    const LockedPicture locked(picture);
    if (locked.Header().biBitCount != 32) {
        return false;
    }
    for (std::size_t y = 0; y < locked.Height(); ++y) {
        const BYTE* const row = locked.RowFromTop(y);
        BYTE any = 0;
        for (std::size_t x = 0; x < locked.Width(); ++x) {
            any = static_cast<BYTE>(any | row[4 * x + 3]);
        }
        if (any != 0) {
            return true;
        }
    }
    return false;
}

Picture AlphaOf(const Picture& picture) {
    const LockedPicture locked(picture);
    Picture alpha = NewPicture(locked.Width(), locked.Height(), 8, GreyRamp(8));
    const LockedPicture lockedAlpha(alpha);
    for (std::size_t y = 0; y < locked.Height(); ++y) {
        const BYTE* const from = locked.RowFromTop(y);
        BYTE* const to = lockedAlpha.RowFromTop(y);
        for (std::size_t x = 0; x < locked.Width(); ++x) {
            to[x] = from[4 * x + 3];
        }
    }
    return alpha;
}

void SetAlpha(const Picture& picture, const Picture& alpha) {
    const LockedPicture locked(picture);
    const LockedPicture lockedAlpha(alpha);
    for (std::size_t y = 0; y < locked.Height(); ++y) {
        const BYTE* const from = lockedAlpha.RowFromTop(y);
        BYTE* const to = locked.RowFromTop(y);
        for (std::size_t x = 0; x < locked.Width(); ++x) {
            to[4 * x + 3] = from[x];
        }
    }
}

bool AreOfOneSize(const Picture& picture, const Picture& other) {
    const LockedPicture locked(picture);
    const LockedPicture lockedOther(other);
    return locked.Width() == lockedOther.Width() && locked.Height() == lockedOther.Height();
}
