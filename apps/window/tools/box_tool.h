// Rectangles and ellipses: areas, and rectangles that effects take.
#ifndef QV8_WINDOW_TOOLS_BOX_TOOL_H
#define QV8_WINDOW_TOOLS_BOX_TOOL_H

#include <optional>

#include "tools/box.h"
#include "tools/drag_tool.h"

class BoxTool : public DragTool {
public:
    enum class Form {
        kArea,     // an area: the value "polygon"
        kEllipse,  // an area: the value "ellipse"
        kParameter // of an effect: a rectangle whose right and bottom belong to it
    };
    // `name`: of the value.
    BoxTool(Form form, std::string name) : form_(form), name_(std::move(name)) {}

    bool Key(int virtualKey) override;
    ToolCursor CursorAt(Position at, double reach) const override;
    Figure Shown() const override;
    DrawnValues Values() const override;
    void Follow(const DrawnValues& values) override;

protected:
    int GripAt(Position at, double reach) const override;
    bool Begin(const MouseEvent& event, int& grip) override;
    bool Drag(const MouseEvent& event, int grip) override;
    bool End() override;

private:
    Form form_;
    std::string name_;
    std::optional<Box> box_;
    Box start_; // when the drag began
};

#endif
