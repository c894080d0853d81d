#include "geometry/rotation_mapping.h"

#include <algorithm>
#include <cmath>

namespace qv8 {
namespace {

// Away from zero by one, then cut off.
std::int64_t Widen(float extreme) {
    return static_cast<std::int64_t>(extreme < 0 ? extreme - 1.0F : extreme + 1.0F);
}

// The first x of the span from which on isReached(x) holds; it does not cease to. Steps of growing size from the guess
// find two places around it, halving does the rest.
template <class Condition>
int FirstWhere(const Span& within, int guess, Condition isReached) {
    int low = within.begin;
    int high = within.end;
    std::int64_t at = std::clamp(guess, low, high);
    for (std::int64_t step = 1; low < high && at < high && !isReached(static_cast<int>(at)); step *= 2) {
        low = static_cast<int>(at) + 1;
        at += step;
    }
    high = static_cast<int>(std::min<std::int64_t>(at, high));
    at = std::int64_t{high} - 1;
    for (std::int64_t step = 1; at >= low && isReached(static_cast<int>(at)); step *= 2) {
        high = static_cast<int>(at);
        at -= step;
    }
    low = static_cast<int>(std::max<std::int64_t>(at + 1, low));
    while (low < high) {
        const int middle = low + (high - low) / 2;
        if (isReached(middle)) {
            high = middle;
        } else {
            low = middle + 1;
        }
    }
    return low;
}

} // namespace

Turn TurnBy(int angle) {
    const double theta = (angle / 100.0) * kPi / 180.0;
    const auto mapOf = [](double angleInRadians) -> LinearMap {
        const auto sine = static_cast<float>(std::sin(angleInRadians));
        const auto cosine = static_cast<float>(std::cos(angleInRadians));
        return {cosine, -sine, sine, cosine};
    };
    return {mapOf(theta), mapOf(-theta)};
}

CentredRect CentredRectOf(const DibView& picture) {
    return {-(picture.width / 2), -(picture.height / 2), picture.width, picture.height};
}

CentredRect BoundsOf(const LinearMap& forth, const CentredRect& source) {
    float minX = 0;
    float maxX = 0;
    float minY = 0;
    float maxY = 0;
    for (const std::int64_t column : {source.firstColumn, source.firstColumn + source.width - 1}) {
        for (const std::int64_t row : {source.firstRow, source.firstRow + source.height - 1}) {
            const auto x = static_cast<float>(column);
            const auto y = static_cast<float>(row);
            const float turnedX = x * forth.columnByX + y * forth.columnByY;
            const float turnedY = x * forth.rowByX + y * forth.rowByY;
            minX = std::min(minX, turnedX);
            maxX = std::max(maxX, turnedX);
            minY = std::min(minY, turnedY);
            maxY = std::max(maxY, turnedY);
        }
    }
    const std::int64_t left = Widen(minX);
    const std::int64_t bottom = Widen(minY);
    return {left, bottom, Widen(maxX) - left + 1, Widen(maxY) - bottom + 1};
}

SourceLines SourceLinesOf(const LinearMap& back, int y) {
    const auto row = static_cast<float>(y);
    return {{back.columnByX, row * back.columnByY}, {back.rowByX, row * back.rowByY}};
}

Span SpanInside(const SourceLine& line, std::int64_t first, std::int64_t count, const Span& within, Span& guess) {
    const auto low = static_cast<int>(first);
    const auto high = static_cast<int>(first + count - 1);
    const auto at = [&](int x) { return static_cast<std::int64_t>(line.At(x)); };
    if (line.factor > 0) {
        guess.begin = FirstWhere(within, guess.begin, [&](int x) { return at(x) >= low; });
        guess.end = FirstWhere(within, guess.end, [&](int x) { return at(x) > high; });
    } else {
        guess.begin = FirstWhere(within, guess.begin, [&](int x) { return at(x) <= high; });
        guess.end = FirstWhere(within, guess.end, [&](int x) { return at(x) < low; });
    }
    return guess;
}

} // namespace qv8
