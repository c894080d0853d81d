#include "compose/panorama_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "area/area.h"
#include "geometry/rotation_mapping.h"

namespace qv8 {
namespace {

constexpr double kHalfPi = kPi / 2;
static_assert(kHalfPi == 1.5707963285);

int Truncated(double value) {
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kGreatest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp<double>(value, kLeast, kGreatest));
}

// In whole pixels.
double LengthOf(const Segment& segment) {
    const double dx = static_cast<double>(segment.x2) - segment.x1;
    const double dy = static_cast<double>(segment.y2) - segment.y1;
    return std::trunc(std::sqrt(dx * dx + dy * dy));
}

// Of directions that are whole quarters apart the last bit decides which hundredth of a degree they are turned by, and
// the systems' arc tangents do not agree in it. In extended precision, rounded, they do.
double ArcTangent(double opposite, double adjacent) {
    return adjacent == 0 ? kHalfPi : static_cast<double>(std::atan(static_cast<long double>(opposite / adjacent)));
}

// From 0 up to 360 degrees, counter-clockwise from the right.
double DegreesOf(const Segment& segment) {
    const double dx = static_cast<double>(segment.x2) - segment.x1;
    const double dy = static_cast<double>(segment.y2) - segment.y1;
    int quadrant = dx >= 0 ? 0 : 1;
    if (dy < 0) {
        quadrant = 3 - quadrant;
    }
    const double partial =
        quadrant % 2 == 0 ? ArcTangent(std::abs(dy), std::abs(dx)) : ArcTangent(std::abs(dx), std::abs(dy));
    return (partial + quadrant * kHalfPi) / kPi * 180.0;
}

} // namespace

Segment SegmentInside(const DibView& picture, POINT first, POINT second) {
    const POINT from = PointWithin(picture, first);
    const POINT to = PointWithin(picture, second);
    const LONG top = picture.height - 1;
    return {static_cast<int>(from.x), static_cast<int>(top - from.y), static_cast<int>(to.x),
            static_cast<int>(top - to.y)};
}

PanoramaFit FitPanorama(const DibView& base, const Segment& onBase, const DibView& added, const Segment& onAdded) {
    const double length = LengthOf(onAdded);
    const double scale = length > 0 ? LengthOf(onBase) / length : 0; // one point instead of two scales to nothing
    PanoramaFit fit = {};
    fit.width = Truncated(added.width * scale);
    fit.height = Truncated(added.height * scale);
    fit.angle = Truncated((DegreesOf(onBase) - DegreesOf(onAdded)) * 100.0);
    // The first point of the scaled picture from its middle, and the same turned.
    const int middleColumn = (fit.width - 1) / 2;
    const int middleRow = fit.height / 2;
    const double dx = std::trunc(onAdded.x1 * scale) - middleColumn;
    const double dy = std::trunc(onAdded.y1 * scale) - middleRow;
    const double theta = fit.angle / 100.0 * kPi / 180.0;
    const double cosine = std::cos(theta);
    const double sine = std::sin(theta);
    fit.x = Truncated(onBase.x1 - std::trunc(cosine * dx - sine * dy));
    fit.y = Truncated(base.height - 1 - onBase.y1 + std::trunc(cosine * dy + sine * dx));
    return fit;
}

} // namespace qv8
