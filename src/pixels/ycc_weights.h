// How much red, green and blue count in the luminance and the two colour differences of a colour.
#pragma once

namespace qv8 {

struct ColourWeights {
    double red;
    double green;
    double blue;
};

constexpr ColourWeights kLuminanceWeights = {0.299, 0.587, 0.114};
constexpr ColourWeights kCrWeights = {0.5, -0.41869, -0.08131};
constexpr ColourWeights kCbWeights = {-0.16874, -0.33126, 0.5};

} // namespace qv8
