#include "tools/box_tool.h"

int BoxTool::GripAt(Position at, double reach) const {
    return box_ ? GripOfBox(*box_, at, reach) : kNothing;
}

// A press beside the box begins a new one; released without moving it leaves none.
bool BoxTool::Begin(const MouseEvent& event, int& grip) {
    const bool isNew = grip == kNothing;
    if (isNew) {
        grip = box_grip::kRight | box_grip::kBottom;
        box_ = Box{event.at.x, event.at.y, event.at.x, event.at.y};
    }
    start_ = *box_;
    return isNew;
}

bool BoxTool::Drag(const MouseEvent& event, int grip) {
    box_ = DraggedBox(start_, grip, Pressed(), event.at, event.shift);
    return true;
}

bool BoxTool::End() {
    box_ = TidyBox(*box_);
    if (box_->Width() < 1 || box_->Height() < 1) {
        box_.reset();
    }
    return true;
}

bool BoxTool::Key(int virtualKey) {
    if (!box_) {
        return false;
    }
    switch (virtualKey) {
    case tool_key::kEscape:
    case tool_key::kDelete:
        box_.reset();
        return true;
    case tool_key::kLeft:
    case tool_key::kRight:
    case tool_key::kUp:
    case tool_key::kDown:
        box_ = DraggedBox(*box_, box_grip::kWhole, {}, StepOf(virtualKey), false);
        return true;
    default:
        return false;
    }
}

ToolCursor BoxTool::CursorAt(Position at, double reach) const {
    return CursorOfGrip(GripAt(at, reach));
}

Figure BoxTool::Shown() const {
    Figure figure;
    if (box_) {
        auto& edges = form_ == Form::kParameter ? figure.lines : figure.area;
        edges.push_back({form_ == Form::kEllipse ? EllipseInBox(*box_) : CornersOfBox(*box_)});
        figure.handles = HandlesOfBox(*box_);
    }
    return figure;
}

DrawnValues BoxTool::Values() const {
    if (!box_) {
        return {};
    }
    const RECT rect = RectOfBox(TidyBox(*box_));
    if (form_ == Form::kEllipse) {
        return {{name_, rect}};
    }
    // The last row and column, and not what follows them.
    const LONG right = rect.right - 1;
    const LONG bottom = rect.bottom - 1;
    if (form_ == Form::kParameter) {
        return {{name_, RECT{rect.left, rect.top, right, bottom}}};
    }
    return {
        {name_, std::vector<POINT>{{rect.left, rect.top}, {right, rect.top}, {right, bottom}, {rect.left, bottom}}}};
}

void BoxTool::Follow(const DrawnValues& values) {
    for (const DrawnValue& drawn : values) {
        if (drawn.name != name_ || IsDragging()) {
            continue;
        }
        box_.reset();
        if (const RECT* const rect = std::get_if<RECT>(&drawn.value)) {
            box_ = BoxOfRect(*rect);
        } else if (const auto* const points = std::get_if<std::vector<POINT>>(&drawn.value);
                   points != nullptr && points->size() == 4) {
            box_ = BoxOfRect({points->at(0).x, points->at(0).y, points->at(2).x, points->at(2).y});
        }
        if (box_ && form_ != Form::kEllipse) {
            ++box_->right;
            ++box_->bottom;
        }
    }
}
