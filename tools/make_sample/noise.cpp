#include "noise.h"

#include <cmath>

namespace {

std::uint32_t Scramble(std::uint32_t value) {
    value ^= value >> 16;
    value *= 0x7FEB352DU;
    value ^= value >> 15;
    value *= 0x846CA68BU;
    return value ^ value >> 16;
}

double Ease(double t) {
    return t * t * (3 - 2 * t);
}

} // namespace

double HashAt(int x, int y, std::uint32_t seed) {
    const std::uint32_t mixed =
        Scramble(static_cast<std::uint32_t>(x) + Scramble(static_cast<std::uint32_t>(y) + seed));
    return mixed / 4294967295.0;
}

double ValueNoise(double x, double y, std::uint32_t seed) {
    const double left = std::floor(x);
    const double top = std::floor(y);
    const double u = Ease(x - left);
    const double v = Ease(y - top);
    const int i = static_cast<int>(left);
    const int j = static_cast<int>(top);
    const double upper = HashAt(i, j, seed) * (1 - u) + HashAt(i + 1, j, seed) * u;
    const double lower = HashAt(i, j + 1, seed) * (1 - u) + HashAt(i + 1, j + 1, seed) * u;
    return upper * (1 - v) + lower * v;
}

double CloudNoise(double x, double y, int octaves, std::uint32_t seed) {
    double sum = 0;
    double whole = 0;
    double weight = 1;
    for (int octave = 0; octave < octaves; ++octave, weight /= 2) {
        sum += weight * ValueNoise(x, y, seed + static_cast<std::uint32_t>(octave));
        whole += weight;
        // Each octave is turned a little, so that the grids do not show.
        const double turned = 1.6 * x + 1.2 * y;
        y = 1.6 * y - 1.2 * x;
        x = turned;
    }
    return sum / whole;
}

double RidgeNoise(double x, double y, int octaves, std::uint32_t seed) {
    double sum = 0;
    double whole = 0;
    double weight = 1;
    for (int octave = 0; octave < octaves; ++octave, weight /= 2.1, x *= 2.03, y *= 2.03) {
        const double crest = 1 - std::fabs(2 * ValueNoise(x, y, seed + static_cast<std::uint32_t>(octave)) - 1);
        sum += weight * crest * crest;
        whole += weight;
    }
    return sum / whole;
}

double Random::Next() {
    state_ += 0x9E3779B9U;
    return Scramble(state_) / 4294967296.0;
}
