// The curve of the gamma effects: a value is pulled toward or away from its square root.
#pragma once

namespace qv8 {

// Levels as parts of the whole, and how much larger their square roots are.
struct GammaLevels {
    double values[256];
    double rises[256];
};

// The square root to the last bit, which the compiler works out: 256 roots take longer than a small picture. Newton's
// steps end within a last bit of the root; the rest of its square, exact from halves of its digits, mends that.
constexpr double GammaRoot(double x) {
    if (x == 0) {
        return 0;
    }
    double root = 1;
    for (int step = 0; step != 12; ++step) {
        root = (root + x / root) / 2;
    }
    const double shifted = 134217729.0 * root;
    const double upper = shifted - (shifted - root);
    const double lower = root - upper;
    return root + (((x - upper * upper) - 2 * upper * lower) - lower * lower) / (2 * root);
}

constexpr GammaLevels MakeGammaLevels() {
    GammaLevels result = {};
    for (int v = 0; v != 256; ++v) {
        result.values[v] = v / 255.0;
        result.rises[v] = GammaRoot(result.values[v]) - result.values[v];
    }
    return result;
}

inline constexpr GammaLevels kGammaLevels = MakeGammaLevels();

// The curve at v = 0..255 in double precision, neither rounded nor clamped.
inline double GammaCurve(int v, double gamma) {
    return (kGammaLevels.values[v] - gamma * kGammaLevels.rises[v]) * 255.0;
}

} // namespace qv8
