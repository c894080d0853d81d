// Polygons: the inside by the rule of alternating crossings, and the outline along the corners.
//
// A row runs through the centres of its pixels. An edge from (x1, y1) down to (x2, y2) belongs to the rows y1 <= y < y2
// and crosses each at the first column that is not left of it; what lies between the first and the second crossing, the
// third and the fourth, and so on, is inside. A line takes in each column (if it is flat) or row (if it is steep) the
// pixel nearest to it, and of two equally near ones the upper or left one, whichever way it is drawn. All of it is
// exact: fractions are kept as whole numbers over the length of the line.
#include <algorithm>
#include <cstdlib>
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

struct Edge {
    std::int64_t top = 0; // the first row inside the bitmap
    std::int64_t end = 0; // the row after the last
    std::int64_t x = 0;
    FloorWalk offset; // of the crossing from `x`, in the current row

    std::int64_t Crossing() const {
        return x + offset.Value();
    }
};

Edge MakeEdge(POINT upper, POINT lower, std::int64_t height) {
    const std::int64_t first = std::max<std::int64_t>(-std::int64_t{upper.y}, 0);
    const std::int64_t rise = std::int64_t{lower.y} - upper.y;
    Edge edge;
    edge.top = upper.y + first;
    edge.end = std::min<std::int64_t>(lower.y, height);
    edge.x = upper.x;
    edge.offset = FloorWalk(std::int64_t{lower.x} - upper.x, rise - 1, rise, first);
    return edge;
}

// The edges that touch rows of the bitmap, by their first row. Returns their number.
std::size_t CollectEdges(const POINT* points, std::size_t count, std::int64_t height, Edge* edges) {
    std::size_t edgeCount = 0;
    POINT from = points[count - 1];
    for (std::size_t i = 0; i < count; ++i) {
        const POINT to = points[i];
        if (from.y != to.y) {
            const Edge edge = from.y < to.y ? MakeEdge(from, to, height) : MakeEdge(to, from, height);
            if (edge.top < edge.end) {
                edges[edgeCount++] = edge;
            }
        }
        from = to;
    }
    std::sort(edges, edges + edgeCount, [](const Edge& a, const Edge& b) { return a.top < b.top; });
    return edgeCount;
}

// Fills the spans of one row and moves the edges on to the next.
void FillRow(const Pixels& target, std::int64_t y, Edge** active, std::size_t activeCount, Ink ink) {
    const auto isLeft = [](const Edge* a, const Edge* b) { return a->Crossing() < b->Crossing(); };
    if (!std::is_sorted(active, active + activeCount, isLeft)) {
        std::sort(active, active + activeCount, isLeft);
    }
    for (std::size_t i = 0; i + 1 < activeCount; i += 2) {
        target.FillSpan(y, active[i]->Crossing(), active[i + 1]->Crossing(), ink);
    }
    for (std::size_t i = 0; i < activeCount; ++i) {
        active[i]->offset.Next();
    }
}

bool FillInside(const Pixels& target, const POINT* points, std::size_t count, Ink ink) {
    const std::unique_ptr<Edge[]> edges(new (std::nothrow) Edge[count]);
    const std::unique_ptr<Edge*[]> active(new (std::nothrow) Edge*[count]);
    if (!edges || !active) {
        return false;
    }
    const std::size_t edgeCount = CollectEdges(points, count, target.height, edges.get());
    std::size_t next = 0;
    std::size_t activeCount = 0;
    for (std::int64_t y = 0; next < edgeCount || activeCount != 0; ++y) {
        const auto isOver = [y](const Edge* edge) { return edge->end <= y; };
        activeCount =
            static_cast<std::size_t>(std::remove_if(active.get(), active.get() + activeCount, isOver) - active.get());
        while (next < edgeCount && edges[next].top == y) {
            active[activeCount++] = &edges[next++];
        }
        FillRow(target, y, active.get(), activeCount, ink);
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
