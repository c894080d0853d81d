// Luminance of a colour from single-precision products, one table a channel.
#pragma once

#include "platform/platform.h"

namespace qv8 {

struct LuminanceTables {
    float red[256];
    float green[256];
    float blue[256];

    LuminanceTables() {
        for (int i = 0; i != 256; ++i) {
            const auto value = static_cast<float>(i);
            red[i] = value * 0.299F;
            green[i] = value * 0.587F;
            blue[i] = value * 0.114F;
        }
    }

    // The grey level of a colour in colour conversion: the products summed in double precision, truncated.
    BYTE Grey(const RGBQUAD& colour) const {
        const double sum = static_cast<double>(red[colour.rgbRed]) + static_cast<double>(green[colour.rgbGreen]) +
                           static_cast<double>(blue[colour.rgbBlue]);
        return static_cast<BYTE>(sum);
    }
};

} // namespace qv8
