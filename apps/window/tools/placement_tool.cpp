#include "tools/placement_tool.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int kTurnGrip = 32; // beside those of a box
constexpr LONG kMostOpaque = 255;
constexpr LONG kFade = 16; // for one press of a key
constexpr int kPlusKeys[] = {0x6B, 0xBB};
constexpr int kMinusKeys[] = {0x6D, 0xBD};

bool IsOneOf(std::span<const int> keys, int key) {
    return std::find(keys.begin(), keys.end(), key) != keys.end();
}

// The angle after what was pressed at one position went to another, about a middle.
double DraggedAngle(double start, Position middle, Position from, const MouseEvent& event) {
    return TidyAngle(start + DirectionOf(event.at, middle) - DirectionOf(from, middle), event.shift);
}

Outline TurnedFrame(const Box& frame, double angle) {
    Outline outline{CornersOfBox(frame)};
    for (Position& corner : outline.points) {
        corner = Turned(corner, frame.Middle(), angle);
    }
    return outline;
}

// In the middle of the upper edge, a little outside, so that it is seen whatever lies inside.
Position TurnHandleOf(const Box& frame, double angle, double beyond) {
    const Position middle = frame.Middle();
    return Turned({middle.x, frame.top - frame.Height() * beyond}, middle, angle);
}

const LONG* WholeNumber(const DrawnValue& drawn, const char* name) {
    return drawn.name == name ? std::get_if<LONG>(&drawn.value) : nullptr;
}

void TakeNumber(const DrawnValue& drawn, const char* name, LONG& number) {
    if (const LONG* const value = WholeNumber(drawn, name)) {
        number = *value;
    }
}

void TakeAngle(const DrawnValue& drawn, double& angle) {
    if (const double* const value = std::get_if<double>(&drawn.value); value != nullptr && drawn.name == "angle") {
        angle = *value;
    }
}

} // namespace

PlacementTool::PlacementTool(const ToolSubject& subject, Place place)
    : size_(subject.secondSize), place_(place),
      at_(place == Place::kCorner ? POINT{} : PixelAt({subject.picture.width / 2, subject.picture.height / 2})) {}

// The middle pixel of an even number of them is the one before the middle.
Box PlacementTool::Frame() const {
    const auto before = [this](double length) { return place_ == Place::kCorner ? 0 : std::floor((length - 1) / 2); };
    const double left = static_cast<double>(at_.x) - before(size_.width);
    const double top = static_cast<double>(at_.y) - before(size_.height);
    return {left, top, left + size_.width, top + size_.height};
}

Position PlacementTool::TurnHandle() const {
    constexpr double kBeyond = 0.125;
    return TurnHandleOf(Frame(), angle_, kBeyond);
}

int PlacementTool::GripAt(Position at, double reach) const {
    if (place_ == Place::kMiddle && IsNear(TurnHandle(), at, reach)) {
        return kTurnGrip;
    }
    const Box frame = Frame();
    return frame.Contains(Turned(at, frame.Middle(), -angle_)) ? box_grip::kWhole : kNothing;
}

bool PlacementTool::Begin(const MouseEvent& /*event*/, int& /*grip*/) {
    startAt_ = at_;
    startAngle_ = angle_;
    return false;
}

bool PlacementTool::Drag(const MouseEvent& event, int grip) {
    if (grip == kTurnGrip) {
        angle_ = DraggedAngle(startAngle_, Frame().Middle(), Pressed(), event);
    } else {
        at_.x = startAt_.x + static_cast<LONG>(std::lround(event.at.x - Pressed().x));
        at_.y = startAt_.y + static_cast<LONG>(std::lround(event.at.y - Pressed().y));
    }
    return true;
}

bool PlacementTool::Key(int virtualKey) {
    const LONG fade = IsOneOf(kPlusKeys, virtualKey) ? kFade : IsOneOf(kMinusKeys, virtualKey) ? -kFade : 0;
    const Position step = StepOf(virtualKey);
    opacity_ = std::clamp(opacity_ + fade, LONG{0}, kMostOpaque);
    at_.x += static_cast<LONG>(step.x);
    at_.y += static_cast<LONG>(step.y);
    return fade != 0 || step.x != 0 || step.y != 0;
}

ToolCursor PlacementTool::CursorAt(Position at, double reach) const {
    const int grip = GripAt(at, reach);
    return grip == kTurnGrip ? ToolCursor::kTurn : grip == kNothing ? ToolCursor::kArrow : ToolCursor::kMove;
}

Figure PlacementTool::Shown() const {
    Figure figure;
    figure.lines.push_back(TurnedFrame(Frame(), angle_));
    if (place_ == Place::kMiddle) {
        figure.lines.push_back({{TurnHandleOf(Frame(), angle_, 0), TurnHandle()}, false});
        figure.handles.push_back(TurnHandle());
    }
    return figure;
}

DrawnValues PlacementTool::Values() const {
    DrawnValues values{{"x", at_.x}, {"y", at_.y}, {"opacity", opacity_}};
    if (place_ == Place::kMiddle) {
        values.push_back({"angle", angle_});
    }
    return values;
}

void PlacementTool::Follow(const DrawnValues& values) {
    if (!IsDragging()) {
        for (const DrawnValue& drawn : values) {
            TakeNumber(drawn, "x", at_.x);
            TakeNumber(drawn, "y", at_.y);
            TakeNumber(drawn, "opacity", opacity_);
            TakeAngle(drawn, angle_);
        }
    }
}

int SizeTool::GripAt(Position at, double reach) const {
    using namespace box_grip;
    const int grip = GripOfBox({0, 0, size_.width, size_.height}, at, reach);
    return grip != kWhole && grip != kNone && (grip & (kLeft | kTop)) == 0 ? grip : kNothing;
}

bool SizeTool::Drag(const MouseEvent& event, int grip) {
    const bool right = (grip & box_grip::kRight) != 0;
    const bool bottom = (grip & box_grip::kBottom) != 0;
    const double across = std::max(1.0, std::round(event.at.x));
    const double down = std::max(1.0, std::round(event.at.y));
    if (right && bottom && !event.shift) {
        const double factor = std::max(across / picture_.width, down / picture_.height);
        size_ = {std::max(1.0, std::round(picture_.width * factor)),
                 std::max(1.0, std::round(picture_.height * factor))};
    } else {
        size_ = {right ? across : size_.width, bottom ? down : size_.height};
    }
    return true;
}

ToolCursor SizeTool::CursorAt(Position at, double reach) const {
    const int grip = GripAt(at, reach);
    return grip == kNothing ? ToolCursor::kArrow : CursorOfGrip(grip);
}

Figure SizeTool::Shown() const {
    const Box box{0, 0, size_.width, size_.height};
    Figure figure;
    figure.lines.push_back({CornersOfBox(box)});
    figure.handles = {{box.right, box.bottom}, {box.right, box.Middle().y}, {box.Middle().x, box.bottom}};
    return figure;
}

DrawnValues SizeTool::Values() const {
    return {{"width", static_cast<LONG>(size_.width)}, {"height", static_cast<LONG>(size_.height)}, {"scale", {}}};
}

// One side alone keeps the proportions, and so does a factor.
void SizeTool::Follow(const DrawnValues& values) {
    if (IsDragging()) {
        return;
    }
    double width = 0;
    double height = 0;
    double scale = 0;
    for (const DrawnValue& drawn : values) {
        if (const LONG* const value = WholeNumber(drawn, "width")) {
            width = static_cast<double>(*value);
        } else if (const LONG* const other = WholeNumber(drawn, "height")) {
            height = static_cast<double>(*other);
        } else if (const double* const factor = std::get_if<double>(&drawn.value);
                   factor != nullptr && drawn.name == "scale") {
            scale = *factor;
        }
    }
    if (scale == 0) {
        scale = width != 0 ? width / picture_.width : height != 0 ? height / picture_.height : 1;
    }
    size_ = {width != 0 ? width : std::round(picture_.width * scale),
             height != 0 ? height : std::round(picture_.height * scale)};
}

int TurnTool::GripAt(Position /*at*/, double /*reach*/) const {
    return kTurnGrip;
}

bool TurnTool::Begin(const MouseEvent& /*event*/, int& /*grip*/) {
    startAngle_ = angle_;
    return false;
}

bool TurnTool::Drag(const MouseEvent& event, int /*grip*/) {
    angle_ = DraggedAngle(startAngle_, frame_.Middle(), Pressed(), event);
    return true;
}

ToolCursor TurnTool::CursorAt(Position /*at*/, double /*reach*/) const {
    return ToolCursor::kTurn;
}

Figure TurnTool::Shown() const {
    Figure figure;
    figure.lines.push_back(TurnedFrame(frame_, angle_));
    figure.lines.push_back({{frame_.Middle(), TurnHandleOf(frame_, angle_, 0)}, false});
    figure.handles.push_back(TurnHandleOf(frame_, angle_, 0));
    return figure;
}

DrawnValues TurnTool::Values() const {
    return {{"angle", angle_}};
}

void TurnTool::Follow(const DrawnValues& values) {
    if (!IsDragging()) {
        for (const DrawnValue& drawn : values) {
            TakeAngle(drawn, angle_);
        }
    }
}
