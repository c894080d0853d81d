// Levels of grey by index, and back, in pictures whose table holds them all.
#pragma once

#include "frame/dib.h"

namespace qv8 {

struct GreyRamp {
    BYTE levels[256];
    BYTE indices[256];
};

inline GreyRamp GreyRampOf(const DibView& picture) {
    GreyRamp ramp = {};
    for (int i = 0; i < picture.NameableEntries(); ++i) {
        const BYTE level = picture.palette[i].rgbBlue;
        ramp.levels[i] = level;
        ramp.indices[level] = static_cast<BYTE>(i);
    }
    return ramp;
}

// Whether pixels can be blended: indices only where they stand for all levels of grey.
inline bool CanBlend(const DibView& picture) {
    return !picture.IsPaletted() || IsGreyRampPalette(picture);
}

} // namespace qv8
