// Colours mixed by the rules written out.
#pragma once

#include <algorithm>

#include "support/picture.h"

namespace test {

// The four pixels around a place of a turned picture, `fx` and `fy` of the way to the neighbours.
inline BYTE Mixed(float fx, float fy, BYTE pixel, BYTE beside, BYTE above, BYTE diagonal) {
    const float one = (1 - fx) * pixel;
    const float two = fx * beside;
    const float ownRow = one + two;
    const float three = fx * diagonal;
    const float four = (1 - fx) * above;
    const float acrossRow = three + four;
    const float value = fy * acrossRow + (1 - fy) * ownRow;
    return static_cast<BYTE>(std::clamp(static_cast<int>(value), 0, 255));
}

inline BYTE Blend(int opacity, BYTE base, BYTE layer) {
    if (base == layer) {
        return base;
    }
    return static_cast<BYTE>(static_cast<int>((255.0 - opacity) * base / 255 + 1.0 * opacity * layer / 255));
}

inline Colour Blend(int opacity, Colour base, Colour layer) {
    return {Blend(opacity, base.blue, layer.blue), Blend(opacity, base.green, layer.green),
            Blend(opacity, base.red, layer.red)};
}

} // namespace test
