// Polygons, corner by corner.
#ifndef QV8_WINDOW_TOOLS_POLYGON_TOOL_H
#define QV8_WINDOW_TOOLS_POLYGON_TOOL_H

#include "tools/drag_tool.h"

// A click adds a corner; a double click, Return or a click on the first corner ends the polygon. Corners can be dragged
// then, and a click beside them begins a new polygon.
class PolygonTool : public DragTool {
public:
    bool Mouse(const MouseEvent& event) override;
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
    bool Close();

    std::vector<Position> corners_;
    bool closed_ = false;
    Position pointer_; // where the next corner would be
};

#endif
