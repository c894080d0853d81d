// Places of straightened pixels, on every target, against the formula for one pixel at a time.
#include <gtest/gtest.h>

#include <cmath>

#include "geometry/affine_kernels.h"
#include "simd/target.h"
#include "support/random.h"

namespace {

using test::Random;

struct Place {
    int column, row;
};

Place PlaceOf(const qv8::Patch& p, int pixelX, int pixelY) {
    constexpr Place kNowhere = {-1, -1};
    const double x = pixelX - p.originX;
    const double y = pixelY - p.originY;
    const double s = (p.upY * x - p.upX * y) / p.determinant;
    const double t = (p.rightX * y - p.rightY * x) / p.determinant;
    const double m = (p.b - 1) * s;
    const double n = (p.a - 1) * t - m;
    const double discriminant = (n + 1) * (n + 1) + 4 * m;
    if (discriminant < 0) {
        return kNowhere;
    }
    const double d1 = 1 - n + std::sqrt(discriminant);
    const double d2 = std::sqrt(discriminant) + n + 1;
    const double column = std::trunc(p.width * (2 * s / d2));
    const double fromTop = std::trunc(p.height - p.height * (2 * t / d1));
    const bool isPlaced =
        d1 >= 0.0001 && d2 >= 0.0001 && column >= 0 && column < p.width && fromTop >= 0 && fromTop < p.height;
    return isPlaced ? Place{static_cast<int>(column), static_cast<int>(p.height - fromTop) - 1} : kNowhere;
}

POINT RandomPoint(int size, Random& random) {
    return {random.Between(0, size - 1), random.Between(0, size - 1)};
}

TEST(AffineKernels, FindThePlaceOfEachPixel) {
    Random random(95);
    int placed = 0;
    for (int i = 0; i != 6000; ++i) {
        const int size = i % 3 == 0 ? 100000 : 300; // about the largest square of 1-bit pixels, and a small one
        POINT points[4] = {RandomPoint(size, random), RandomPoint(size, random), RandomPoint(size, random),
                           RandomPoint(size, random)};
        if (i % 4 == 0) { // a parallelogram
            points[3] = {points[0].x + points[2].x - points[1].x, points[0].y + points[2].y - points[1].y};
        }
        const qv8::Corners corners = qv8::CornersOf(points, size, size);
        const qv8::UprightSize between = qv8::SizeBetween(corners);
        qv8::Patch patch;
        if (between.width < 1 || between.height < 1 || !qv8::MakePatch(corners, between, patch)) {
            continue;
        }
        const int x = random.Between(0, size - 100);
        const int y = random.Between(0, size - 1);
        const int count = random.Between(1, 100);
        for (const qv8::Target target : {qv8::Target::kBaseline, qv8::BestTarget()}) {
            qv8::UseTarget(target);
            qv8::SpreadPlaces places;
            qv8::TheAffineKernels().findPlaces(patch, x, y, count, places);
            for (int k = 0; k != count; ++k) {
                const Place expected = PlaceOf(patch, x + k, y);
                ASSERT_EQ(places.columns[k], expected.column) << i;
                if (expected.column >= 0) {
                    ASSERT_EQ(places.rows[k], expected.row) << i;
                    ++placed;
                }
            }
        }
        qv8::UseTarget(qv8::BestTarget());
    }
    EXPECT_GT(placed, 10000);
}

} // namespace
