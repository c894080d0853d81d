// Where a picture comes to lie, how large it becomes and how far it is turned.
#ifndef QV8_WINDOW_TOOLS_PLACEMENT_TOOL_H
#define QV8_WINDOW_TOOLS_PLACEMENT_TOOL_H

#include "tools/box.h"
#include "tools/drag_tool.h"

// A second picture on the first: dragged, turned by its handle where the effect can turn it, faded by plus and minus.
class PlacementTool : public DragTool {
public:
    enum class Place {
        kCorner, // x and y are those of the upper left corner; it is not turned
        kMiddle  // x and y are the pixel where its middle lies
    };
    PlacementTool(const ToolSubject& subject, Place place);

    bool Key(int virtualKey) override;
    ToolCursor CursorAt(Position at, double reach) const override;
    Figure Shown() const override;
    DrawnValues Values() const override;
    void Follow(const DrawnValues& values) override;

protected:
    int GripAt(Position at, double reach) const override;
    bool Begin(const MouseEvent& event, int& grip) override;
    bool Drag(const MouseEvent& event, int grip) override;

private:
    Box Frame() const; // before it is turned
    Position TurnHandle() const;

    Extent size_;
    Place place_;
    POINT at_;         // x and y as the effect takes them
    double angle_ = 0; // degrees to the left
    LONG opacity_ = 255;
    POINT startAt_{}; // when the drag began
    double startAngle_ = 0;
};

// The size of the result, by handles on the right and below; a corner keeps the proportions, unless with Shift.
class SizeTool : public DragTool {
public:
    explicit SizeTool(Extent picture) : picture_(picture), size_(picture) {}

    ToolCursor CursorAt(Position at, double reach) const override;
    Figure Shown() const override;
    DrawnValues Values() const override;
    void Follow(const DrawnValues& values) override;

protected:
    int GripAt(Position at, double reach) const override;
    bool Drag(const MouseEvent& event, int grip) override;

private:
    Extent picture_;
    Extent size_;
};

// The angle of the whole picture, by dragging it about its middle.
class TurnTool : public DragTool {
public:
    explicit TurnTool(Extent picture) : frame_{0, 0, picture.width, picture.height} {}

    ToolCursor CursorAt(Position at, double reach) const override;
    Figure Shown() const override;
    DrawnValues Values() const override;
    void Follow(const DrawnValues& values) override;

protected:
    int GripAt(Position at, double reach) const override;
    bool Begin(const MouseEvent& event, int& grip) override;
    bool Drag(const MouseEvent& event, int grip) override;

private:
    Box frame_;
    double angle_ = 0;
    double startAngle_ = 0; // when the drag began
};

#endif
