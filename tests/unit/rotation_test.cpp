// Sines and cosines of turns.
#include <cmath>

#include <gtest/gtest.h>

#include "geometry/rotation_mapping.h"

namespace test {
namespace {

// Sine of an angle below a quarter turn by its series, without the mathematics of the system.
double SeriesSine(double x) {
    double term = x;
    double sum = x;
    for (int n = 2; n < 30; n += 2) {
        term *= -x * x / (n * (n + 1));
        sum += term;
    }
    return sum;
}

// The same numbers with every compiler and system.
TEST(Turn, SinesAndCosinesOfAllAnglesAreThoseOfTheSeries) {
    for (int angle = -qv8::kMaxAngle; angle <= qv8::kMaxAngle; ++angle) {
        const double theta = (angle / 100.0) * 3.141592657 / 180.0;
        const qv8::Turn turn = qv8::TurnBy(angle);
        // Near a multiple of the quarter turn the rest is small; pi in two parts keeps its digits.
        constexpr double kHalfPiHigh = 1.57079632679489661923;
        constexpr double kHalfPiLow = 6.123233995736766e-17;
        const int quarter = static_cast<int>(std::floor(theta / kHalfPiHigh + 0.5));
        const double rest = (theta - quarter * kHalfPiHigh) - quarter * kHalfPiLow;
        const double s = SeriesSine(rest);
        const double half = SeriesSine(rest / 2);
        const double c = 1 - 2 * half * half;
        const double sines[4] = {s, c, -s, -c};
        const auto sine = static_cast<float>(sines[quarter & 3]);
        const auto cosine = static_cast<float>(sines[(quarter + 1) & 3]);
        ASSERT_TRUE(turn.forth.rowByX == sine && turn.forth.columnByY == -sine && turn.forth.rowByY == cosine &&
                    turn.back.rowByX == -sine && turn.back.columnByX == cosine)
            << angle;
    }
}

} // namespace
} // namespace test
