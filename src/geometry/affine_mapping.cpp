#include "geometry/affine_mapping.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "area/area.h"

namespace qv8 {

Corners CornersOf(const POINT* points, const DibView& picture) {
    POINT sorted[4] = {};
    for (int i = 0; i < 4; ++i) {
        const POINT point = PointWithin(picture, points[i]);
        int place = i; // behind all that are not right of it: equal columns keep their order
        for (; place > 0 && sorted[place - 1].x > point.x; --place) {
            sorted[place] = sorted[place - 1];
        }
        sorted[place] = point;
    }
    Corners corners = {sorted[0], sorted[1], sorted[2], sorted[3]};
    if (corners.lowerLeft.y < corners.upperLeft.y) {
        std::swap(corners.lowerLeft, corners.upperLeft);
    }
    if (corners.upperRight.y > corners.lowerRight.y) {
        std::swap(corners.upperRight, corners.lowerRight);
    }
    return corners;
}

UprightSize SizeBetween(const Corners& corners) {
    const LONG left = std::max(corners.lowerLeft.x, corners.upperLeft.x);
    const LONG right = std::min(corners.lowerRight.x, corners.upperRight.x);
    const LONG top = std::max(corners.upperLeft.y, corners.upperRight.y);
    const LONG bottom = std::min(corners.lowerLeft.y, corners.lowerRight.y);
    return {static_cast<int>(right - left), static_cast<int>(bottom - top)};
}

// Pictures have less than 2^34 pixels, so that the products below and their sums are exact.
bool MakePatch(const Corners& corners, const UprightSize& size, Patch& patch) {
    const POINT& origin = corners.lowerLeft;
    const auto x = [&](const POINT& corner) { return static_cast<double>(corner.x) - origin.x; };
    const auto y = [&](const POINT& corner) { return static_cast<double>(corner.y) - origin.y; };
    const double rightX = x(corners.lowerRight);
    const double rightY = y(corners.lowerRight);
    const double upX = x(corners.upperLeft);
    const double upY = y(corners.upperLeft);
    const double determinant = rightX * upY - rightY * upX;
    if (std::fabs(determinant) < 1) {
        return false;
    }
    const double farX = x(corners.upperRight);
    const double farY = y(corners.upperRight);
    const double a = (farX * upY - farY * upX) / determinant;
    const double b = (farY * rightX - farX * rightY) / determinant;
    patch = {
        static_cast<double>(origin.x),   static_cast<double>(origin.y),   rightX, rightY, upX, upY, determinant, a, b,
        static_cast<double>(size.width), static_cast<double>(size.height)};
    return true;
}

} // namespace qv8
