#include "compose/seam_mask.h"

#include <algorithm>
#include <cmath>

#include "area/mask_canvas.h"
#include "frame/status.h"

namespace qv8 {
namespace {

constexpr int kBeyond = 10; // pixels that the line goes on outside the picture

// In rows from the top.
struct Line {
    POINT from;
    POINT to;
};

LONG ColumnWithin(double x, int width) {
    return static_cast<LONG>(std::clamp<double>(std::round(x), -kBeyond, width - 1 + kBeyond));
}

// From the least to the greatest column that the line has in the rows of the picture and around it. A steep line moves
// on by many rows for a column, and so its ends may be rows away from these, inside the picture too.
Line SlantingLine(int width, int height, const Segment& points) {
    const double slope = static_cast<double>(points.y2 - points.y1) / (points.x2 - points.x1);
    const double intercept = points.y1 - points.x1 * slope;
    const double lowest = (-kBeyond - intercept) / slope;
    const double highest = (height - 1 + kBeyond - intercept) / slope;
    const auto at = [&](double x) -> POINT {
        const LONG column = ColumnWithin(x, width);
        return {column, height - 1 - static_cast<LONG>(column * slope + intercept)};
    };
    return {at(std::min(lowest, highest)), at(std::max(lowest, highest))};
}

Line LineThrough(int width, int height, const Segment& points) {
    if (points.x1 == points.x2) {
        return {{points.x1, -kBeyond}, {points.x1, height - 1 + kBeyond}};
    }
    if (points.y1 == points.y2) {
        const LONG y = height - 1 - points.y1;
        return {{-kBeyond, y}, {width - 1 + kBeyond, y}};
    }
    return SlantingLine(width, height, points);
}

// The corner of the picture that lies deepest in a side.
POINT CornerOf(int width, int height, const Segment& points, SeamSide side) {
    const bool isFirst = side == SeamSide::kFirst;
    const bool isLeft = (points.y2 > points.y1) == isFirst;
    const bool isTop = (points.x2 > points.x1) == isFirst;
    return {isLeft ? 0 : width - 1, isTop ? 0 : height - 1};
}

bool DrawLine(HDC context, const Line& line) {
    const Selection pen = Select(context, GetStockObject(WHITE_PEN));
    return MoveToEx(context, line.from.x, line.from.y, nullptr) != 0 && LineTo(context, line.to.x, line.to.y) != 0;
}

// Fills nothing when the line goes through the corner.
bool FillFrom(HDC context, POINT corner) {
    const DrawingObject<HBRUSH> brush(CreateSolidBrush(RGB(255, 255, 255)));
    if (!brush) {
        return false;
    }
    const Selection selection = Select(context, brush.get());
    ExtFloodFill(context, corner.x, corner.y, RGB(0, 0, 0), FLOODFILLSURFACE);
    return true;
}

} // namespace

GlobalBlock CreateSeamMask(int width, int height, const Segment& points, SeamSide side) {
    GlobalBlock mask(NewMask(width, height).Release());
    if (!mask) {
        return nullptr;
    }
    MaskCanvas canvas(mask.get());
    const bool drawn = canvas.IsReady() && canvas.WriteBits() &&
                       DrawLine(canvas.Context(), LineThrough(width, height, points)) &&
                       FillFrom(canvas.Context(), CornerOf(width, height, points, side)) && canvas.ReadBack();
    if (!drawn) {
        return Fail(canvas.IsLocked() ? QV8_STATUS_DIALOG : QV8_STATUS_MEMORY);
    }
    return mask;
}

} // namespace qv8
