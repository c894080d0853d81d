#include "pixels/palettes.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace qv8 {
namespace {

constexpr RGBQUAD Colour(BYTE red, BYTE green, BYTE blue) {
    return {blue, green, red, 0};
}

constexpr RGBQUAD kColours4[] = {
    Colour(0, 0, 0),       Colour(127, 0, 0),   Colour(0, 127, 0),   Colour(127, 127, 0),
    Colour(0, 0, 127),     Colour(127, 0, 127), Colour(0, 127, 127), Colour(127, 127, 127),
    Colour(192, 192, 192), Colour(255, 0, 0),   Colour(0, 255, 0),   Colour(255, 255, 0),
    Colour(0, 0, 255),     Colour(255, 0, 255), Colour(0, 255, 255), Colour(255, 255, 255),
};

int Squared(int value) {
    return value * value;
}

} // namespace

int WriteFixedPalette(int bitCount, RGBQUAD* palette) {
    switch (bitCount) {
    case 1:
        WriteGreyRamp(palette, 2);
        return 2;
    case 4:
        std::copy(std::begin(kColours4), std::end(kColours4), palette);
        return static_cast<int>(std::size(kColours4));
    case 8:
        for (int i = 0; i != kMostFixedColours; ++i) {
            palette[i] = Colour(static_cast<BYTE>(i % 6 * 51), static_cast<BYTE>(i / 6 % 6 * 51),
                                static_cast<BYTE>(i / 36 * 51));
        }
        return kMostFixedColours;
    default:
        return 0;
    }
}

void WriteGreyRamp(RGBQUAD* palette, int count) {
    if (count == 256) { // without divisions, which take longer than a small picture
        for (DWORD level = 0; level != 256; ++level) {
            const DWORD grey = level * 0x010101;
            std::memcpy(palette + level, &grey, sizeof grey);
        }
        return;
    }
    for (int i = 0; i != count; ++i) {
        const auto level = static_cast<BYTE>(i * 255 / (count - 1));
        palette[i] = Colour(level, level, level);
    }
}

int NearestEntry(const RGBQUAD* palette, int count, BYTE red, BYTE green, BYTE blue) {
    int best = 0;
    int bestDistance = 200000; // more than any two colours are apart
    for (int i = 0; i != count; ++i) {
        const int distance = Squared(red - palette[i].rgbRed) + Squared(green - palette[i].rgbGreen) +
                             Squared(blue - palette[i].rgbBlue);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = i;
        }
    }
    return best;
}

} // namespace qv8
