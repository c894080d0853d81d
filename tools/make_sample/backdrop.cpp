// Sky, mountains, far shore and lake: a colour for every point.
#include "scene.h"

#include <array>
#include <cmath>

#include "noise.h"

namespace {

constexpr double kShore = 292; // where the lake begins
constexpr double kSunX = 492;
constexpr double kSunY = 118;
constexpr Colour kHaze{0.68, 0.74, 0.82};
constexpr Colour kSunlight{1.00, 0.86, 0.62};

Colour ClearSkyAt(double x, double y) {
    const double t = std::clamp(y / kShore, 0.0, 1.0);
    Colour colour = Mix({0.13, 0.32, 0.64}, {0.46, 0.68, 0.90}, Step(0, 0.6, t));
    colour = Mix(colour, {0.98, 0.84, 0.66}, 0.85 * Step(0.45, 1.0, t));
    const double distance = std::hypot(x - kSunX, y - kSunY);
    colour = Mix(colour, {1.0, 0.88, 0.66}, 0.75 * std::exp(-distance / 75));
    return Mix(colour, {1.0, 0.98, 0.90}, Step(21, 15, distance));
}

// Clouds lie on a plane overhead, so they grow flatter toward the horizon.
double CloudDensity(double u, double v) {
    const double billows = CloudNoise(u, v, 6, 40);
    const double cover = CloudNoise(0.35 * u, 0.35 * v, 2, 77);
    return Step(0.46, 0.72, billows + 0.55 * (cover - 0.5));
}

Colour SkyAt(double x, double y) {
    const Colour sky = ClearSkyAt(x, y);
    const double depth = 230 / (kShore + 60 - y);
    const double u = (x - 300) / 95 * depth + 3.1;
    const double v = 3.4 * depth;
    const double density = CloudDensity(u, v);
    const double towardSun = CloudDensity(u + 0.16, v + 0.07);
    const double light = std::clamp(0.72 + 0.5 * (density - towardSun) - 0.28 * density * towardSun, 0.0, 1.0);
    const double warmth = std::exp(-std::hypot(x - kSunX, y - kSunY) / 170);
    const Colour bright = Mix({0.98, 0.97, 0.96}, {1.0, 0.90, 0.74}, warmth);
    const Colour cloud = Mix({0.50, 0.54, 0.64}, bright, light);
    return Mix(sky, cloud, 0.93 * density * Step(kShore + 10, kShore - 120, y));
}

struct Mountains {
    double base;      // lowest height of the crest line, in pixels from the top
    double height;    // of the highest crests above that
    double frequency; // of the crests along the picture
    double haze;      // how much of it the air hides
    double snow;      // how far snow reaches down from the crest
    Colour rock;
    std::uint32_t seed;
};

constexpr std::array kRanges{Mountains{252, 140, 0.0068, 0.36, 30, {0.38, 0.38, 0.44}, 11},
                             Mountains{280, 92, 0.0105, 0.25, 7, {0.27, 0.33, 0.34}, 23},
                             Mountains{292, 92, 0.0085, 0.13, 0, {0.24, 0.34, 0.17}, 38}};

double CrestAt(const Mountains& range, double x) {
    return range.base - range.height * RidgeNoise(range.frequency * x + 0.3, 0.5, 6, range.seed);
}

// Slopes that face the sun are light; the slope comes from noise stretched along the fall of the mountain.
Colour SlopeAt(const Mountains& range, double x, double y, double crest) {
    const double below = y - crest;
    const double u = 0.028 * x + 0.010 * below;
    const double v = 0.014 * y;
    const double slope = RidgeNoise(u, v, 5, range.seed + 100) - RidgeNoise(u + 0.05, v - 0.03, 5, range.seed + 100);
    const double light = std::clamp(0.52 + 3.4 * slope, 0.05, 1.0);
    const double grain = 0.88 + 0.24 * CloudNoise(0.25 * x, 0.25 * y, 3, range.seed + 200);
    Colour colour = Mix(range.rock * 0.45, Mix(range.rock, kSunlight, 0.35), light) * grain;
    const double snowLine = range.snow * (0.5 + CloudNoise(0.05 * x, 0.03 * y, 3, range.seed + 300));
    const double snow = range.snow > 0 ? Step(snowLine + 7, snowLine - 7, below - 70 * slope) : 0;
    colour = Mix(colour, Mix({0.62, 0.69, 0.82}, {1.0, 0.96, 0.92}, light), snow);
    const double mist = range.haze + (0.55 - range.haze) * Step(kShore - 50, kShore, y);
    return Mix(colour, kHaze, mist);
}

// Conifers side by side: each cell of the shore holds one.
double TreeLineAt(double x) {
    double line = kShore;
    for (int row = 0; row < 2; ++row) {
        const double cellWidth = 6.0 + 2 * row;
        const int cell = static_cast<int>(std::floor(x / cellWidth));
        const double centre = (cell + 0.3 + 0.4 * HashAt(cell, row, 5)) * cellWidth;
        const double rise = CloudNoise(0.011 * x + 9 * row, 0.5, 3, 61);
        const double height = (4 + 30 * Step(0.30, 0.70, rise)) * (0.45 + 0.75 * HashAt(cell, row, 6));
        line = std::min(line, kShore - height * (1 - 1.5 * std::fabs(x - centre) / cellWidth));
    }
    return line;
}

Colour ForestAt(double x, double y) {
    const double leaves = CloudNoise(0.55 * x, 0.35 * y, 3, 90);
    const double stand = CloudNoise(0.03 * x, 0.4, 2, 93);
    const Colour green = Mix({0.05, 0.13, 0.07}, {0.24, 0.33, 0.12}, leaves * leaves * 1.5);
    const Colour autumn = Mix({0.22, 0.12, 0.04}, {0.62, 0.38, 0.10}, leaves);
    const Colour forest = Mix(green, autumn, 0.75 * Step(0.55, 0.68, stand));
    return Mix(forest, kHaze, 0.08 + 0.10 * Step(kShore - 40, kShore, y));
}

// A red cabin on the far shore. Returns false where it is not.
bool CabinAt(double x, double y, Colour& colour) {
    const double u = x - 212; // from its left wall
    const double v = kShore - 2 - y;
    if (u > 25 && u < 29 && v > 15 && v < 30) {
        colour = {0.42, 0.30, 0.27}; // chimney
        return true;
    }
    if (v >= 15 && v < 15 + 0.85 * std::min(u + 4, 40 - u) && v < 27) {
        colour = Mix({0.30, 0.31, 0.35}, {0.46, 0.46, 0.48}, std::fmod(v, 3) / 3);
        return true;
    }
    if (u < 0 || u > 36 || v < 0 || v >= 15) {
        return false;
    }
    const bool window = v > 5 && v < 11 && ((u > 4 && u < 10) || (u > 26 && u < 32));
    const bool door = v < 11 && u > 15 && u < 21;
    const double plank = 0.85 + 0.15 * (std::fmod(u, 3) > 0.6);
    colour = window ? Colour{0.98, 0.86, 0.52} : door ? Colour{0.93, 0.91, 0.86} : Colour{0.66, 0.13, 0.10} * plank;
    return true;
}

Colour AboveWaterAt(double x, double y) {
    Colour colour;
    if (CabinAt(x, y, colour)) {
        return colour;
    }
    if (y > TreeLineAt(x)) {
        return ForestAt(x, y);
    }
    for (auto range = kRanges.rbegin(); range != kRanges.rend(); ++range) { // the nearest first
        const double crest = CrestAt(*range, x);
        if (y > crest) {
            return SlopeAt(*range, x, y, crest);
        }
    }
    return SkyAt(x, y);
}

// The mirrored land and sky, moved by waves that look longer and lower the farther away they are.
Colour LakeAt(double x, double y) {
    const double near = (y - kShore) / (kHeight - kShore); // 0 at the far shore
    const double size = 0.035 + near;
    const double wave = CloudNoise(0.055 * x / size, 0.95 * std::sqrt(near) * 38, 3, 120) - 0.5;
    const double ripple = CloudNoise(0.16 * x / size, 2.2 * std::sqrt(near) * 38, 2, 150) - 0.5;
    const double mirrored = kShore - (y - kShore) * 1.25 - (30 * wave + 12 * ripple) * (0.08 + near);
    const Colour reflection = AboveWaterAt(x + 10 * wave * (0.1 + near), std::min(mirrored, kShore - 0.5));
    const double depth = 0.22 + 0.42 * near - 0.45 * ripple * near;
    Colour colour = Mix(reflection * 0.92, {0.04, 0.17, 0.22}, std::clamp(depth, 0.0, 1.0));
    const double column = std::exp(-std::pow((x - kSunX) / (16 + 70 * near), 2));
    const double glitter = Step(0.10, 0.26, wave + 0.6 * ripple) * column;
    colour = Mix(colour, {1.0, 0.93, 0.74}, 0.85 * glitter);
    return Mix(colour, kHaze, 0.45 * Step(4, 0, y - kShore));
}

} // namespace

Colour BackdropAt(double x, double y) {
    return y < kShore ? AboveWaterAt(x, y) : LakeAt(x, y);
}
