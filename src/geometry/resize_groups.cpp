#include "geometry/resize_groups.h"

#include <algorithm>

namespace qv8 {
namespace {

// Of a side that shrinks more than this, the end of a group is looked for near where it must be.
constexpr float kLongGroups = 1.0F / 64;

// Conversions of long numbers are slow in 32-bit code, and hardly any side needs them.
double AsDouble(std::int64_t number) {
    return number <= INT32_MAX ? static_cast<double>(static_cast<std::int32_t>(number)) : static_cast<double>(number);
}
std::int64_t Truncated(double number) {
    return number < INT32_MAX ? static_cast<std::int32_t>(number) : static_cast<std::int64_t>(number);
}

// Where the block of a source position begins. The product is formed in double precision: halves go up exactly.
std::int64_t PlaceOf(const ScaledSide& side, std::int64_t position) {
    return Truncated(AsDouble(position) * static_cast<double>(side.factor) + 0.5);
}

} // namespace

ScaledSide MakeScaledSide(int oldSize, int newSize) {
    return {oldSize, newSize, static_cast<float>(newSize) / static_cast<float>(oldSize)};
}

PixelGroup GroupAt(const ScaledSide& side, int first) {
    const std::int64_t begin = PlaceOf(side, first);
    std::int64_t next = std::int64_t{first} + 1;
    if (side.factor < kLongGroups && begin < side.newSize) {
        const double lastBefore = (static_cast<double>(begin) + 0.5) / static_cast<double>(side.factor) - 2;
        const auto skipped = static_cast<std::int64_t>(lastBefore);
        if (skipped > next && PlaceOf(side, skipped) == begin) { // places never fall
            next = skipped;
        }
    }
    std::int64_t end = PlaceOf(side, next);
    while (!side.Enlarges() && end == begin && end < side.newSize) {
        end = PlaceOf(side, ++next);
    }
    // Places rise by at least 1 where the side enlarges and by at most 1 where it shrinks, so only a block that begins
    // behind the last new pixel would be empty or overlap the one before.
    const auto inside = static_cast<int>(std::min<std::int64_t>(next, side.oldSize));
    const auto resultFirst = static_cast<int>(std::min<std::int64_t>(begin, side.newSize));
    const auto resultEnd = static_cast<int>(std::min<std::int64_t>(end, side.newSize));
    return {first, inside - first, inside, resultFirst, resultEnd - resultFirst};
}

} // namespace qv8
