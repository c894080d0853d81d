// What is marked of a picture: the area that effects change.
#ifndef QV8_WINDOW_TOOLS_SELECTION_H
#define QV8_WINDOW_TOOLS_SELECTION_H

#include <memory>
#include <string>
#include <vector>

#include "pictures/picture.h"
#include "tools/tool.h"

struct Selection {
    enum class Form { kNone, kPolygon, kEllipse, kMask };

    Form form = Form::kNone;
    std::vector<POINT> points;           // of a polygon; a rectangle is one
    RECT rect{};                         // of an ellipse
    std::shared_ptr<const Picture> mask; // 1 bit, of the size of the picture
    bool outside = false;                // everything but that; masks have their bits exchanged instead

    bool IsEmpty() const {
        return form == Form::kNone;
    }
};

// The selection that values of an area tool stand for, inside; none when they are empty.
Selection SelectionFrom(const DrawnValues& values);

// The values of the area's parameters. A mask is the selection's.
DrawnValues AreaValues(const Selection& selection);

// Everything, and the opposite of a selection: without one that is nothing, and stays so.
Selection SelectAll(HGLOBAL image);
Selection Inverted(const Selection& selection);

// A mask of the pixels that are like a colour, as QV8AutoSelectImage marks them, inside of `within` where that is a
// shape. Throws a Failure when the library refuses.
Selection SelectColour(HGLOBAL image, const Selection& within, catalogue::Colour colour, LONG match, LONG tolerance);

// The selection as a mask of the size of the picture, made by QV8SelectImage. Throws a Failure when the library
// refuses.
Selection AsMaskOf(HGLOBAL image, const Selection& selection);

// Masks in files; a picture that is no mask marks as AsMask has it. Names are UTF-8. Throws a Failure.
Selection LoadSelection(const std::string& name, HGLOBAL image);
void SaveSelection(const std::string& name, HGLOBAL image, const Selection& selection);

// The edges of a selection, which move: of a shape as it is, of a mask along the pixels of the client area.
struct SelectionEdges {
    std::vector<Outline> outlines; // in the picture
    std::vector<RECT> runs;        // in the client area, a pixel thick
};
SelectionEdges EdgesOf(const Selection& selection, Extent picture, const ViewMapping& mapping, Extent client);

#endif
