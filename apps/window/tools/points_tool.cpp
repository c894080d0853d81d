#include "tools/points_tool.h"

#include <algorithm>

#include "tools/box.h"

namespace {

constexpr double kInset = 0.125; // of the sides, where corners begin
constexpr double kGap = 0.02;    // between two pictures, of the first one's width
constexpr std::array kPointNames{"a1", "a2", "b1", "b2"};

Position Inside(Position at, Extent picture) {
    return {std::clamp(at.x, 0.0, picture.width - 1), std::clamp(at.y, 0.0, picture.height - 1)};
}

} // namespace

CornersTool::CornersTool(Extent picture, std::string name) : picture_(picture), name_(std::move(name)) {
    const double x = picture.width * kInset;
    const double y = picture.height * kInset;
    const auto corners = CornersOfBox({x, y, picture.width - x, picture.height - y});
    std::copy(corners.begin(), corners.end(), corners_.begin());
}

int CornersTool::GripAt(Position at, double reach) const {
    const auto* const found = std::find_if(corners_.begin(), corners_.end(),
                                           [&](const Position& corner) { return IsNear(corner, at, reach); });
    return found == corners_.end() ? kNothing : static_cast<int>(found - corners_.begin());
}

bool CornersTool::Drag(const MouseEvent& event, int grip) {
    corners_.at(static_cast<std::size_t>(grip)) = Inside(event.at, picture_);
    return true;
}

ToolCursor CornersTool::CursorAt(Position at, double reach) const {
    return GripAt(at, reach) == kNothing ? ToolCursor::kArrow : ToolCursor::kMove;
}

Figure CornersTool::Shown() const {
    Figure figure;
    figure.lines.push_back({{corners_.begin(), corners_.end()}});
    figure.handles.assign(corners_.begin(), corners_.end());
    return figure;
}

DrawnValues CornersTool::Values() const {
    std::vector<POINT> points;
    std::transform(corners_.begin(), corners_.end(), std::back_inserter(points), PixelAt);
    return {{name_, points}};
}

void CornersTool::Follow(const DrawnValues& values) {
    for (const DrawnValue& drawn : values) {
        const auto* const points = std::get_if<std::vector<POINT>>(&drawn.value);
        if (drawn.name == name_ && points != nullptr && points->size() == corners_.size() && !IsDragging()) {
            std::transform(points->begin(), points->end(), corners_.begin(), MiddleOf);
        }
    }
}

PanoramaTool::PanoramaTool(const ToolSubject& subject)
    : subject_(subject), secondLeft_(subject.picture.width * (1 + kGap)),
      secondScale_(subject.picture.height / subject.secondSize.height) {}

Extent PanoramaTool::Room(Extent picture) const {
    return {secondLeft_ + subject_.secondSize.width * secondScale_, picture.height};
}

Position PanoramaTool::ToOwn(std::size_t index, Position seen) const {
    const bool isSecond = index >= kPointsOfOne;
    return isSecond ? Inside({(seen.x - secondLeft_) / secondScale_, seen.y / secondScale_}, subject_.secondSize)
                    : Inside(seen, subject_.picture);
}

Position PanoramaTool::ToSeen(std::size_t index, Position own) const {
    return index < kPointsOfOne ? own : Position{secondLeft_ + own.x * secondScale_, own.y * secondScale_};
}

int PanoramaTool::GripAt(Position at, double reach) const {
    for (std::size_t i = 0; i != points_.size(); ++i) {
        if (points_.at(i) && IsNear(ToSeen(i, *points_.at(i)), at, reach)) {
            return static_cast<int>(i);
        }
    }
    return kNothing;
}

bool PanoramaTool::Begin(const MouseEvent& event, int& grip) {
    if (grip != kNothing) {
        return false;
    }
    const std::size_t first = IsInSecond(event.at) ? kPointsOfOne : 0;
    for (std::size_t i = first; i != first + kPointsOfOne; ++i) {
        if (!points_.at(i)) {
            points_.at(i) = ToOwn(i, event.at);
            grip = static_cast<int>(i);
            return true;
        }
    }
    return false;
}

bool PanoramaTool::Drag(const MouseEvent& event, int grip) {
    const auto index = static_cast<std::size_t>(grip);
    points_.at(index) = ToOwn(index, event.at);
    return true;
}

bool PanoramaTool::Key(int virtualKey) {
    if (virtualKey != tool_key::kEscape && virtualKey != tool_key::kDelete) {
        return false;
    }
    points_.fill({});
    return true;
}

ToolCursor PanoramaTool::CursorAt(Position at, double reach) const {
    return GripAt(at, reach) == kNothing ? ToolCursor::kCross : ToolCursor::kMove;
}

Figure PanoramaTool::Shown() const {
    Figure figure;
    figure.pictures.push_back({subject_.second,
                               {secondLeft_, 0},
                               {subject_.secondSize.width * secondScale_, subject_.secondSize.height * secondScale_}});
    for (std::size_t i = 0; i != points_.size(); ++i) {
        if (points_.at(i)) {
            figure.points.push_back({ToSeen(i, *points_.at(i)), static_cast<int>(i % kPointsOfOne) + 1});
        }
    }
    for (std::size_t i = 0; i != points_.size(); i += kPointsOfOne) {
        if (points_.at(i) && points_.at(i + 1)) {
            figure.lines.push_back({{ToSeen(i, *points_.at(i)), ToSeen(i + 1, *points_.at(i + 1))}, false});
        }
    }
    return figure;
}

DrawnValues PanoramaTool::Values() const {
    DrawnValues values;
    for (std::size_t i = 0; i != points_.size(); ++i) {
        if (!points_.at(i)) {
            return {};
        }
        values.push_back({kPointNames.at(i), std::vector<POINT>{PixelAt(*points_.at(i))}});
    }
    return values;
}

void PanoramaTool::Follow(const DrawnValues& values) {
    for (const DrawnValue& drawn : values) {
        const auto* const name = std::find(kPointNames.begin(), kPointNames.end(), drawn.name);
        const auto* const points = std::get_if<std::vector<POINT>>(&drawn.value);
        if (name != kPointNames.end() && points != nullptr && points->size() == 1 && !IsDragging()) {
            points_.at(static_cast<std::size_t>(name - kPointNames.begin())) = MiddleOf(points->front());
        }
    }
}
