// Polygons: the inside by the rule of alternating crossings, and the outline along the corners.
//
// A row runs through the centres of its pixels. An edge from (x1, y1) down to (x2, y2) belongs to the rows y1 <= y < y2
// and crosses each at the first column that is not left of it; what lies between the first and the second crossing, the
// third and the fourth, and so on, is inside. A line takes in each column (if it is flat) or row (if it is steep) the
// pixel nearest to it, and of two equally near ones the upper or left one, whichever way it is drawn. All of it is
// exact: fractions are kept as whole numbers over the length of the line.
//
// Crossings are kept as bits of a bitmap of their own, where two in one place cancel out. Their order does not matter
// then, so the time goes with the number of edges and the rows each has, however tangled the polygon is.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "platform/surface.h"

using namespace qv8::drawing;

namespace {

std::int64_t FloorDivide(std::int64_t value, std::int64_t divisor) {
    return value / divisor - (value % divisor < 0 ? 1 : 0);
}

// floor((slope * i + offset) / divisor) for i = first, first + 1, ... without a division a step.
class FloorWalk {
public:
    FloorWalk() = default;
    FloorWalk(std::int64_t slope, std::int64_t offset, std::int64_t divisor, std::int64_t first)
        : divisor_(divisor), wholeStep_(FloorDivide(slope, divisor)), restStep_(slope - wholeStep_ * divisor) {
        const std::int64_t rest = restStep_ * first + offset;
        value_ = wholeStep_ * first + FloorDivide(rest, divisor);
        rest_ = rest - FloorDivide(rest, divisor) * divisor;
    }

    std::int64_t Value() const {
        return value_;
    }
    void Next() {
        value_ += wholeStep_;
        rest_ += restStep_;
        if (rest_ >= divisor_) {
            rest_ -= divisor_;
            ++value_;
        }
    }

private:
    std::int64_t divisor_ = 1;
    std::int64_t wholeStep_ = 0;
    std::int64_t restStep_ = 0;
    std::int64_t value_ = 0;
    std::int64_t rest_ = 0;
};

// The crossings of the rows between two, 64 columns a word, the leftmost in its highest bit.
struct Crossings {
    std::int64_t firstRow = 0;
    std::int64_t endRow = 0;
    std::int64_t width = 0;
    std::size_t rowWords = 0;
    std::unique_ptr<std::uint64_t[]> words;

    std::uint64_t* Row(std::int64_t y) const {
        return words.get() + static_cast<std::size_t>(y - firstRow) * rowWords;
    }
    // One left of the bitmap counts from the first column on, one right of it not at all.
    void Turn(std::int64_t y, std::int64_t x) const {
        if (x < width) {
            const auto column = static_cast<std::size_t>(std::max<std::int64_t>(x, 0));
            Row(y)[column / 64] ^= std::uint64_t{1} << (63 - column % 64);
        }
    }
};

// Room for the rows of the bitmap that the polygon reaches. No words when memory is short or there are no such rows.
Crossings MakeCrossings(const Pixels& target, const POINT* points, std::size_t count) {
    const auto [top, bottom] =
        std::minmax_element(points, points + count, [](const POINT& a, const POINT& b) { return a.y < b.y; });
    Crossings crossings;
    crossings.firstRow = std::max<std::int64_t>(top->y, 0);
    crossings.endRow = std::min<std::int64_t>(bottom->y, target.height);
    crossings.width = target.width;
    crossings.rowWords = (static_cast<std::size_t>(target.width) + 63) / 64;
    if (crossings.firstRow < crossings.endRow) {
        const auto rows = static_cast<std::size_t>(crossings.endRow - crossings.firstRow);
        crossings.words.reset(new (std::nothrow) std::uint64_t[rows * crossings.rowWords]());
    }
    return crossings;
}

void AddEdge(const Crossings& crossings, POINT upper, POINT lower) {
    const std::int64_t first = std::max<std::int64_t>(-std::int64_t{upper.y}, 0);
    const std::int64_t rise = std::int64_t{lower.y} - upper.y;
    const std::int64_t end = std::min<std::int64_t>(lower.y, crossings.endRow);
    FloorWalk offset(std::int64_t{lower.x} - upper.x, rise - 1, rise, first);
    for (std::int64_t y = upper.y + first; y < end; ++y, offset.Next()) {
        crossings.Turn(y, upper.x + offset.Value());
    }
}

// Makes of each crossing all columns from it up to the next one. Returns whether the last one goes on behind the word.
bool FillBetween(std::uint64_t& word, bool goesOn) {
    for (unsigned distance = 1; distance != 64; distance *= 2) {
        word ^= word >> distance;
    }
    word = goesOn ? ~word : word;
    return (word & 1) != 0;
}

// Of the pixels in up to eight bytes, the first of which are the upper bits of `filled`, inks those that are filled.
void FillWord(std::uint8_t* bytes, std::size_t count, std::uint64_t filled, Ink ink) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes, count);
    const std::uint64_t inPlace = __builtin_bswap64(filled); // all systems of this platform store the lowest byte first
    word = ink == Ink::White ? word | inPlace : word & ~inPlace;
    std::memcpy(bytes, &word, count);
}

void FillRow(const Crossings& crossings, const Pixels& target, std::int64_t y, Ink ink) {
    std::uint64_t* const words = crossings.Row(y);
    bool goesOn = false;
    for (std::size_t i = 0; i != crossings.rowWords; ++i) {
        goesOn = FillBetween(words[i], goesOn);
    }
    if (crossings.width % 64 != 0) { // padding stays
        words[crossings.rowWords - 1] &= ~std::uint64_t{0} << (64 - crossings.width % 64);
    }
    std::uint8_t* const row = target.Row(static_cast<std::int32_t>(y));
    for (std::size_t i = 0; i != crossings.rowWords; ++i) {
        FillWord(row + 8 * i, std::min<std::size_t>(target.stride - 8 * i, 8), words[i], ink);
    }
}

bool FillInside(const Pixels& target, const POINT* points, std::size_t count, Ink ink) {
    const Crossings crossings = MakeCrossings(target, points, count);
    if (!crossings.words) {
        return crossings.firstRow >= crossings.endRow;
    }
    POINT from = points[count - 1];
    for (std::size_t i = 0; i < count; ++i) {
        const POINT to = points[i];
        if (from.y != to.y) {
            from.y < to.y ? AddEdge(crossings, from, to) : AddEdge(crossings, to, from);
        }
        from = to;
    }
    for (std::int64_t y = crossings.firstRow; y < crossings.endRow; ++y) {
        FillRow(crossings, target, y, ink);
    }
    return true;
}

bool IsDrawablePolygon(const POINT* points, int count) {
    return points != nullptr && count >= 2 && std::all_of(points, points + count, [](const POINT& point) {
               return IsDrawable(point.x) && IsDrawable(point.y);
           });
}

} // namespace

namespace qv8::drawing {

void DrawLine(const Pixels& target, POINT from, POINT to, Ink ink) {
    const std::int64_t dx = std::int64_t{to.x} - from.x;
    const std::int64_t dy = std::int64_t{to.y} - from.y;
    const bool isSteep = std::abs(dy) > std::abs(dx);
    const std::int64_t length = isSteep ? std::abs(dy) : std::abs(dx);
    if (length == 0) {
        return;
    }
    const bool isForward = (isSteep ? dy : dx) > 0;
    const std::int64_t start = isSteep ? from.y : from.x;
    const std::int64_t side = isSteep ? target.height : target.width;
    const std::int64_t first = std::max<std::int64_t>(isForward ? -start : start - (side - 1), 0);
    const std::int64_t end = std::min(isForward ? side - start : start + 1, length);
    FloorWalk offset(2 * (isSteep ? dx : dy), length - 1, 2 * length, first);
    for (std::int64_t i = first; i < end; ++i, offset.Next()) {
        const std::int64_t along = isForward ? start + i : start - i;
        if (isSteep) {
            target.Set(from.x + offset.Value(), along, ink);
        } else {
            target.Set(along, from.y + offset.Value(), ink);
        }
    }
}

} // namespace qv8::drawing

extern "C" BOOL Polygon(HDC context, const POINT* points, int count) {
    const Pixels* const target = TargetOf(context);
    if (target == nullptr || !IsDrawablePolygon(points, count)) {
        return FALSE;
    }
    const std::size_t corners = static_cast<std::size_t>(count);
    if (!FillInside(*target, points, corners, context->brush->ink)) {
        return FALSE;
    }
    for (std::size_t i = 0; i < corners; ++i) {
        DrawLine(*target, points[i], points[(i + 1) % corners], context->pen->ink);
    }
    return TRUE;
}
