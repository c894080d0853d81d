#include "tools/view_mapping.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kLeastScale = 1.0 / 64;
constexpr double kMostScale = 32;
constexpr double kClicksToDouble = 3;

// Where a line of `length` begins in a room, for one that would begin at `start`.
double ClampSide(double start, double length, double room) {
    return length <= room ? std::floor((room - length) / 2) : std::clamp(start, room - length, 0.0);
}

} // namespace

ViewMapping Fit(Extent picture, Extent client) {
    ViewMapping mapping;
    mapping.scale =
        std::clamp(std::min(client.width / picture.width, client.height / picture.height), kLeastScale, 1.0);
    return Clamp(mapping, picture, client);
}

ViewMapping ZoomAround(const ViewMapping& mapping, Position inClient, double scale) {
    const Position fixed = mapping.ToPicture(inClient);
    return {scale, inClient.x - fixed.x * scale, inClient.y - fixed.y * scale};
}

ViewMapping Clamp(const ViewMapping& mapping, Extent picture, Extent client) {
    return {mapping.scale, ClampSide(mapping.left, picture.width * mapping.scale, client.width),
            ClampSide(mapping.top, picture.height * mapping.scale, client.height)};
}

double ScaleAfter(double scale, int clicks) {
    // Positions on a ladder of thirds of a doubling; what lies between two steps goes to the next one in the direction.
    const double step = std::log2(scale) * kClicksToDouble;
    const double nearest = std::round(step);
    const bool isOnStep = std::abs(step - nearest) < 1e-6;
    const double from = isOnStep ? nearest : clicks > 0 ? std::floor(step) : std::ceil(step);
    return std::clamp(std::exp2((from + clicks) / kClicksToDouble), kLeastScale, kMostScale);
}
