#include "tools/polygon_tool.h"

#include <algorithm>

#include "tools/box.h"

namespace {

constexpr std::size_t kFewestCorners = 2; // that the library takes

} // namespace

int PolygonTool::GripAt(Position at, double reach) const {
    const auto found = std::find_if(corners_.begin(), corners_.end(),
                                    [&](const Position& corner) { return IsNear(corner, at, reach); });
    return found == corners_.end() ? kNothing : static_cast<int>(found - corners_.begin());
}

bool PolygonTool::Close() {
    const bool closes = !closed_ && corners_.size() >= kFewestCorners;
    closed_ = closed_ || closes;
    return closes;
}

bool PolygonTool::Begin(const MouseEvent& event, int& grip) {
    if (grip == 0 && Close()) {
        grip = kNothing;
        return true;
    }
    if (grip != kNothing) {
        return false;
    }
    if (closed_) {
        corners_.clear();
        closed_ = false;
    }
    corners_.push_back(event.at);
    grip = static_cast<int>(corners_.size()) - 1;
    return true;
}

bool PolygonTool::Drag(const MouseEvent& event, int grip) {
    corners_[static_cast<std::size_t>(grip)] = event.at;
    return true;
}

bool PolygonTool::Mouse(const MouseEvent& event) {
    pointer_ = event.at;
    if (event.kind == MouseEvent::Kind::kDoubleClick) {
        return Close(); // its first press has added the last corner
    }
    const bool isOpen = !closed_ && !corners_.empty();
    return DragTool::Mouse(event) || isOpen; // the line to the pointer moves
}

bool PolygonTool::Key(int virtualKey) {
    switch (virtualKey) {
    case tool_key::kReturn:
        return Close();
    case tool_key::kEscape:
    case tool_key::kDelete: {
        const bool had = !corners_.empty();
        corners_.clear();
        closed_ = false;
        return had;
    }
    case tool_key::kBack:
        if (closed_ || corners_.empty()) {
            return false;
        }
        corners_.pop_back();
        return true;
    default:
        return false;
    }
}

ToolCursor PolygonTool::CursorAt(Position at, double reach) const {
    return GripAt(at, reach) == kNothing ? ToolCursor::kCross : ToolCursor::kMove;
}

Figure PolygonTool::Shown() const {
    Figure figure;
    if (!corners_.empty()) {
        Outline outline{corners_, closed_};
        if (!closed_ && !IsDragging()) {
            outline.points.push_back(pointer_);
        }
        figure.area.push_back(std::move(outline));
        figure.handles = corners_;
    }
    return figure;
}

DrawnValues PolygonTool::Values() const {
    if (!closed_) {
        return {};
    }
    std::vector<POINT> points;
    std::transform(corners_.begin(), corners_.end(), std::back_inserter(points), PixelAt);
    return {{"polygon", points}};
}

void PolygonTool::Follow(const DrawnValues& values) {
    for (const DrawnValue& drawn : values) {
        if (drawn.name == "polygon" && !IsDragging()) {
            const auto* const points = std::get_if<std::vector<POINT>>(&drawn.value);
            corners_.clear();
            if (points != nullptr) {
                std::transform(points->begin(), points->end(), std::back_inserter(corners_), MiddleOf);
            }
            closed_ = points != nullptr;
        }
    }
}
