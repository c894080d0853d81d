// Pixels that are marked one by one: corners to straighten, and what two pictures have in common.
#ifndef QV8_WINDOW_TOOLS_POINTS_TOOL_H
#define QV8_WINDOW_TOOLS_POINTS_TOOL_H

#include <array>
#include <optional>

#include "tools/drag_tool.h"

// Four corners, which are there from the beginning: a little inside of the picture.
class CornersTool : public DragTool {
public:
    CornersTool(Extent picture, std::string name);

    ToolCursor CursorAt(Position at, double reach) const override;
    Figure Shown() const override;
    DrawnValues Values() const override;
    void Follow(const DrawnValues& values) override;

protected:
    int GripAt(Position at, double reach) const override;
    bool Drag(const MouseEvent& event, int grip) override;

private:
    Extent picture_;
    std::string name_;
    std::array<Position, 4> corners_;
};

// Two points in each of two pictures side by side, the second one scaled to the height of the first. A click sets the
// next point of the picture that it meets; when both are there they can be dragged.
class PanoramaTool : public DragTool {
public:
    explicit PanoramaTool(const ToolSubject& subject);

    ToolCursor CursorAt(Position at, double reach) const override;
    Figure Shown() const override;
    DrawnValues Values() const override;
    void Follow(const DrawnValues& values) override;
    Extent Room(Extent picture) const override;
    bool Key(int virtualKey) override;

protected:
    int GripAt(Position at, double reach) const override;
    bool Begin(const MouseEvent& event, int& grip) override;
    bool Drag(const MouseEvent& event, int grip) override;

private:
    static constexpr std::size_t kPointsOfOne = 2;

    bool IsInSecond(Position at) const {
        return at.x >= secondLeft_;
    }
    // Between what is seen and the picture that point `index` is in.
    Position ToOwn(std::size_t index, Position seen) const;
    Position ToSeen(std::size_t index, Position own) const;

    ToolSubject subject_;
    double secondLeft_;
    double secondScale_;
    std::array<std::optional<Position>, 2 * kPointsOfOne> points_; // a1, a2, b1, b2, each in its own picture
};

#endif
