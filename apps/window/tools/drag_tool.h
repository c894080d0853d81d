// A tool that takes hold of something when the button goes down, and lets go of it when the button goes up.
#ifndef QV8_WINDOW_TOOLS_DRAG_TOOL_H
#define QV8_WINDOW_TOOLS_DRAG_TOOL_H

#include "tools/tool.h"

class DragTool : public Tool {
public:
    bool Mouse(const MouseEvent& event) override;

protected:
    static constexpr int kNothing = -1;

    // What can be taken hold of at a position, as a number that the tool gives it; kNothing when there is nothing.
    virtual int GripAt(Position at, double reach) const = 0;
    // The three parts of a drag return whether what is drawn has changed. Begin() may make something new and return
    // what is held of it through `grip`.
    virtual bool Begin(const MouseEvent& event, int& grip);
    virtual bool Drag(const MouseEvent& event, int grip) = 0;
    virtual bool End();

    Position Pressed() const {
        return pressed_;
    }
    bool IsDragging() const {
        return grip_ != kNothing;
    }

private:
    int grip_ = kNothing;
    Position pressed_;
};

#endif
