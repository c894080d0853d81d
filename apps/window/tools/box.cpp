#include "tools/box.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr double kTurn = 360;
constexpr double kRadians = std::numbers::pi / 180;

} // namespace

bool IsNear(Position a, Position b, double reach) {
    return std::abs(a.x - b.x) <= reach && std::abs(a.y - b.y) <= reach;
}

int GripOfBox(const Box& box, Position at, double reach) {
    using namespace box_grip;
    constexpr int kGrips[] = {kLeft | kTop, kRight | kTop, kRight | kBottom, kLeft | kBottom,
                              kTop,         kRight,        kBottom,          kLeft};
    const std::vector<Position> handles = HandlesOfBox(box);
    for (std::size_t i = 0; i != handles.size(); ++i) {
        if (IsNear(at, handles[i], reach)) {
            return kGrips[i];
        }
    }
    return box.Contains(at) ? kWhole : kNone;
}

ToolCursor CursorOfGrip(int grip) {
    using namespace box_grip;
    switch (grip) {
    case kNone:
        return ToolCursor::kCross;
    case kWhole:
        return ToolCursor::kMove;
    case kLeft:
    case kRight:
        return ToolCursor::kSizeAcross;
    case kTop:
    case kBottom:
        return ToolCursor::kSizeUpright;
    case kLeft | kTop:
    case kRight | kBottom:
        return ToolCursor::kSizeFalling;
    default:
        return ToolCursor::kSizeRising;
    }
}

// The corners first: where a box is small they are more useful than the middles of its sides.
std::vector<Position> HandlesOfBox(const Box& box) {
    const Position middle = box.Middle();
    std::vector<Position> handles = CornersOfBox(box);
    handles.insert(handles.end(),
                   {{middle.x, box.top}, {box.right, middle.y}, {middle.x, box.bottom}, {box.left, middle.y}});
    return handles;
}

Box DraggedBox(const Box& start, int grip, Position from, Position to, bool square) {
    using namespace box_grip;
    const double dx = to.x - from.x;
    const double dy = to.y - from.y;
    const auto moves = [grip](int side) { return (grip & (side | kWhole)) != 0; };
    Box box{start.left + (moves(kLeft) ? dx : 0), start.top + (moves(kTop) ? dy : 0),
            start.right + (moves(kRight) ? dx : 0), start.bottom + (moves(kBottom) ? dy : 0)};
    const bool isCorner = (grip & (kLeft | kRight)) != 0 && (grip & (kTop | kBottom)) != 0;
    if (square && isCorner) {
        const double side = std::max(std::abs(box.Width()), std::abs(box.Height()));
        const double across = std::copysign(side, box.Width());
        const double down = std::copysign(side, box.Height());
        ((grip & kLeft) != 0 ? box.left : box.right) = (grip & kLeft) != 0 ? box.right - across : box.left + across;
        ((grip & kTop) != 0 ? box.top : box.bottom) = (grip & kTop) != 0 ? box.bottom - down : box.top + down;
    }
    return box;
}

Box TidyBox(const Box& box) {
    const auto [left, right] = std::minmax({std::round(box.left), std::round(box.right)});
    const auto [top, bottom] = std::minmax({std::round(box.top), std::round(box.bottom)});
    return {left, top, right, bottom};
}

RECT RectOfBox(const Box& box) {
    return {static_cast<LONG>(std::lround(box.left)), static_cast<LONG>(std::lround(box.top)),
            static_cast<LONG>(std::lround(box.right)), static_cast<LONG>(std::lround(box.bottom))};
}

Box BoxOfRect(const RECT& rect) {
    return TidyBox({static_cast<double>(rect.left), static_cast<double>(rect.top), static_cast<double>(rect.right),
                    static_cast<double>(rect.bottom)});
}

std::vector<Position> CornersOfBox(const Box& box) {
    return {{box.left, box.top}, {box.right, box.top}, {box.right, box.bottom}, {box.left, box.bottom}};
}

std::vector<Position> EllipseInBox(const Box& box) {
    constexpr int kSteps = 120;
    const Position middle = box.Middle();
    std::vector<Position> points;
    for (int i = 0; i != kSteps; ++i) {
        const double angle = i * kTurn / kSteps * kRadians;
        points.push_back({middle.x + box.Width() / 2 * std::cos(angle), middle.y + box.Height() / 2 * std::sin(angle)});
    }
    return points;
}

Position Turned(Position at, Position middle, double degrees) {
    const double cosine = std::cos(degrees * kRadians);
    const double sine = std::sin(degrees * kRadians);
    const double x = at.x - middle.x;
    const double y = at.y - middle.y;
    return {middle.x + x * cosine + y * sine, middle.y - x * sine + y * cosine};
}

double DirectionOf(Position at, Position middle) {
    return std::atan2(middle.y - at.y, at.x - middle.x) / kRadians;
}

double TidyAngle(double degrees, bool steps) {
    constexpr double kStep = 15;
    constexpr double kHundred = 100;
    const double angle = std::fmod(steps ? std::round(degrees / kStep) * kStep : degrees, kTurn);
    return std::fmod(std::round(angle * kHundred), kTurn * kHundred) / kHundred;
}

POINT PixelAt(Position at) {
    return {static_cast<LONG>(std::floor(at.x)), static_cast<LONG>(std::floor(at.y))};
}

Position MiddleOf(POINT pixel) {
    return {static_cast<double>(pixel.x) + 0.5, static_cast<double>(pixel.y) + 0.5};
}
