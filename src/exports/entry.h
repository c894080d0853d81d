// What the exported functions share: each is the call frame around one worker.
#pragma once

#include "area/area.h"
#include "frame/call_frame.h"
#include "frame/progress.h"

namespace qv8 {

inline ImageSet ImagesOf(const ImageSet* target) {
    return target != nullptr ? *target : ImageSet{nullptr, nullptr};
}

inline AreaArguments AreaOf(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                            const RECT* rect, BOOL inside) {
    return {
        ImagesOf(target), static_cast<BYTE>(areaType), points, pointCount, rect != nullptr ? *rect : RECT{0, 0, 0, 0},
        inside != 0};
}
inline AreaArguments AreaOf(HGLOBAL image, DWORD areaType, const POINT* points, int pointCount, const RECT* rect,
                            BOOL inside) {
    const ImageSet target = {image, nullptr};
    return AreaOf(&target, areaType, points, pointCount, rect, inside);
}

// A colour whose parts come as low bytes.
inline RGBQUAD ColourOf(DWORD red, DWORD green, DWORD blue) {
    return {static_cast<BYTE>(blue), static_cast<BYTE>(green), static_cast<BYTE>(red), 0};
}

} // namespace qv8
