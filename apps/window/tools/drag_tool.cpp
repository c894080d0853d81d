#include "tools/drag_tool.h"

bool DragTool::Mouse(const MouseEvent& event) {
    switch (event.kind) {
    case MouseEvent::Kind::kPress:
        pressed_ = event.at;
        grip_ = GripAt(event.at, event.reach);
        return Begin(event, grip_);
    case MouseEvent::Kind::kMove:
        return IsDragging() && Drag(event, grip_);
    case MouseEvent::Kind::kRelease:
        if (IsDragging()) {
            grip_ = kNothing;
            return End();
        }
        return false;
    default:
        return false;
    }
}

bool DragTool::Begin(const MouseEvent& /*event*/, int& /*grip*/) {
    return false;
}

bool DragTool::End() {
    return false;
}
