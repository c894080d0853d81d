// The curve of the gamma effects: a value is pulled toward or away from its square root.
#pragma once

#include <cmath>

namespace qv8 {

// The curve at v = 0..255 in double precision, neither rounded nor clamped.
inline double GammaCurve(int v, double gamma) {
    const double x = v / 255.0;
    return (x - gamma * (std::sqrt(x) - x)) * 255.0;
}

} // namespace qv8
