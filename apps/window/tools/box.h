// Rectangles with handles: what is under the pointer, and what dragging makes of them.
#ifndef QV8_WINDOW_TOOLS_BOX_H
#define QV8_WINDOW_TOOLS_BOX_H

#include <vector>

#include <qv8platform.h>

#include "tools/tool.h"

struct Box {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    double Width() const {
        return right - left;
    }
    double Height() const {
        return bottom - top;
    }
    Position Middle() const {
        return {(left + right) / 2, (top + bottom) / 2};
    }
    bool Contains(Position at) const {
        return at.x >= left && at.x < right && at.y >= top && at.y < bottom;
    }
};

// The sides that a handle moves, or the whole box.
namespace box_grip {
inline constexpr int kNone = -1;
inline constexpr int kLeft = 1;
inline constexpr int kTop = 2;
inline constexpr int kRight = 4;
inline constexpr int kBottom = 8;
inline constexpr int kWhole = 16;
} // namespace box_grip

bool IsNear(Position a, Position b, double reach);

// The handles come before the inside, so that a small box can still be changed.
int GripOfBox(const Box& box, Position at, double reach);
ToolCursor CursorOfGrip(int grip);
std::vector<Position> HandlesOfBox(const Box& box);

// The box after its grip went from one position to another; a corner keeps both sides equal if `square`.
Box DraggedBox(const Box& start, int grip, Position from, Position to, bool square);

// The same box with its sides in order and between pixels.
Box TidyBox(const Box& box);

RECT RectOfBox(const Box& box);
Box BoxOfRect(const RECT& rect);

std::vector<Position> CornersOfBox(const Box& box);
std::vector<Position> EllipseInBox(const Box& box);

// Positions turned to the left, as angles of effects turn, by degrees about a middle.
Position Turned(Position at, Position middle, double degrees);
// The direction from the middle to a position in the same degrees: 0 is to the right.
double DirectionOf(Position at, Position middle);
// The angle as effects take it: hundredths of a degree, within a turn. With `steps` the nearest multiple of 15 degrees.
double TidyAngle(double degrees, bool steps);

// The pixel at a position.
POINT PixelAt(Position at);
// The middle of a pixel.
Position MiddleOf(POINT pixel);

#endif
