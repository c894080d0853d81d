// Draws what tools show onto a window.
#ifndef QV8_WINDOW_TOOLS_PAINT_H
#define QV8_WINDOW_TOOLS_PAINT_H

#include <qv8platform.h>

#include "tools/selection.h"
#include "tools/tool.h"

// The number of steps after which moving edges look the same again. A timer of some 100 ms counts them.
inline constexpr int kAntSteps = 8;

// `dots`: the resolution of the window, 96 for plain handles.
void PaintFigure(HDC device, const ViewMapping& mapping, const Figure& figure, int antStep, int dots);

// The edges of a selection, which move likewise.
void PaintEdges(HDC device, const ViewMapping& mapping, const SelectionEdges& edges, int antStep);

// The pixels `from` of a packed picture, counted from its upper left corner, stretched to a part of the device.
void PaintPixels(HDC device, const RECT& to, const BYTE* packed, const RECT& from);

// The cursor of the system that stands for the tool's.
HCURSOR SystemCursor(ToolCursor cursor);

#endif
