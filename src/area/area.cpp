#include "area/area.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "area/area_mask.h"
#include "frame/status.h"

namespace qv8 {
namespace {

WorkRect WholePicture(const DibView& picture) {
    return {0, 0, picture.width - 1, picture.height - 1};
}

// Rows from the top become rows from the bottom.
WorkRect ToMemoryRows(const RECT& rect, int maxY) {
    return {rect.left, maxY - rect.bottom, rect.right, maxY - rect.top};
}

bool UseCallersMask(const DibView& picture, HGLOBAL hMask, Area& area) {
    Picture mask;
    if (!OpenMask(hMask, picture, mask)) {
        return false;
    }
    area.rect = WholePicture(picture);
    area.mask = mask.view.pixels;
    area.maskStride = mask.view.stride;
    area.maskMemory.lock = std::move(mask.lock);
    return true;
}

// Gives the area a mask of its size, into which draw(mask) draws a shape; unless `inside`, every bit is inverted then.
template <class Draw>
bool UseDrawnMask(bool inside, Area& area, Draw draw) {
    NewPicture empty = NewMask(area.rect.Width(), area.rect.Height());
    if (!empty) {
        return false;
    }
    const auto stride = empty.view.stride;
    GlobalBlock mask(empty.Release());
    if (!draw(mask.get()) || (!inside && !InvertMask(mask.get(), stride))) {
        return Fail(QV8_STATUS_DIALOG);
    }
    area.maskMemory = HoldBlock(mask.release());
    if (!area.maskMemory) {
        return false;
    }
    area.mask = area.maskMemory.As<BYTE>() + kMaskHeaderBytes;
    area.maskStride = stride;
    return true;
}

// Copies the points, each moved to the nearest place inside the picture, and finds their bounding box. Sets status 3
// when it fails.
LockedBlock ClipPolygon(const DibView& picture, const AreaArguments& arguments, RECT& box) {
    const auto count = static_cast<std::size_t>(arguments.pointCount);
    LockedBlock block = AllocateWorkingBlock(std::uint64_t{count} * sizeof(POINT));
    if (!block) {
        return block;
    }
    box = {picture.width - 1, picture.height - 1, 0, 0};
    auto* const clipped = block.As<POINT>();
    for (std::size_t i = 0; i != count; ++i) {
        clipped[i] = PointWithin(picture, arguments.points[i]);
        box.left = std::min(box.left, clipped[i].x);
        box.top = std::min(box.top, clipped[i].y);
        box.right = std::max(box.right, clipped[i].x);
        box.bottom = std::max(box.bottom, clipped[i].y);
    }
    return block;
}

// Takes the box of a shape as the area when what is inside the shape counts, else the whole picture. Returns the corner
// of the area, from which the shape is drawn into the mask.
POINT UseBox(const DibView& picture, const RECT& box, bool inside, Area& area) {
    area.rect = inside ? ToMemoryRows(box, picture.height - 1) : WholePicture(picture);
    return inside ? POINT{box.left, box.top} : POINT{0, 0};
}

bool UsePolygon(const DibView& picture, const AreaArguments& arguments, Area& area) {
    if (arguments.pointCount < 2 || arguments.points == nullptr) {
        return Fail(QV8_STATUS_PARAMETER);
    }
    RECT box = {};
    const LockedBlock points = ClipPolygon(picture, arguments, box);
    if (!points) {
        return false;
    }
    const POINT corner = UseBox(picture, box, arguments.inside, area);
    auto* const first = points.As<POINT>();
    std::for_each(first, first + arguments.pointCount, [&](POINT& point) {
        point.x -= corner.x;
        point.y -= corner.y;
    });
    return UseDrawnMask(arguments.inside, area,
                        [&](HGLOBAL mask) { return DrawPolygonMask(mask, first, arguments.pointCount); });
}

bool UseEllipse(const DibView& picture, const AreaArguments& arguments, Area& area) {
    const RECT box = RectWithin(picture, arguments.rect);
    const POINT corner = UseBox(picture, box, arguments.inside, area);
    const RECT shape = {box.left - corner.x, box.top - corner.y, box.right - corner.x, box.bottom - corner.y};
    return UseDrawnMask(arguments.inside, area, [&](HGLOBAL mask) { return DrawEllipseMask(mask, shape); });
}

} // namespace

bool ResolveArea(const DibView& picture, const AreaArguments& arguments, Area& area) {
    switch (arguments.areaType) {
    case QV8_AREA_MASK:
        return UseCallersMask(picture, arguments.target.hMask, area);
    case QV8_AREA_WHOLE:
        area.rect = WholePicture(picture);
        return true;
    case QV8_AREA_POLYGON:
        return UsePolygon(picture, arguments, area);
    case QV8_AREA_ELLIPSE:
        return UseEllipse(picture, arguments, area);
    default:
        return Fail(QV8_STATUS_PARAMETER);
    }
}

bool OpenArea(const AreaArguments& arguments, unsigned acceptFlags, bool parametersAreGood, Picture& picture,
              Area& area) {
    if (!OpenPicture(arguments.target.hImage, acceptFlags, picture)) {
        return false;
    }
    if (!parametersAreGood) {
        return Fail(QV8_STATUS_PARAMETER);
    }
    return ResolveArea(picture.view, arguments, area);
}

bool IsMaskSizeOf(const DibView& picture, const DibView& mask) {
    if (mask.bitCount == 1 && mask.width == picture.width && mask.height == picture.height) {
        return true;
    }
    return Fail(QV8_STATUS_PICTURE);
}

bool OpenMask(HGLOBAL hMask, const DibView& picture, Picture& mask) {
    return LockPicture(hMask, mask) && CheckPicture(mask) && IsMaskSizeOf(picture, mask.view);
}

POINT PointWithin(const DibView& picture, const POINT& point) {
    return {std::clamp<LONG>(point.x, 0, picture.width - 1), std::clamp<LONG>(point.y, 0, picture.height - 1)};
}

RECT RectWithin(const DibView& picture, const RECT& rect) {
    const POINT first = PointWithin(picture, {rect.left, rect.top});
    const POINT second = PointWithin(picture, {rect.right, rect.bottom});
    return {std::min(first.x, second.x), std::min(first.y, second.y), std::max(first.x, second.x),
            std::max(first.y, second.y)};
}

namespace {

// Bits of the byte at `column`, the one at `column` first; bits to its left are pushed out.
unsigned BitsFrom(const BYTE* maskRow, std::int64_t column) {
    return (static_cast<unsigned>(maskRow[column / 8]) << (column % 8)) & 0xFFU;
}

} // namespace

bool NextRun(const BYTE* maskRow, int width, int& begin, int& end) {
    std::int64_t column = begin; // a byte may reach beyond the width, and that beyond what an int holds
    while (column < width) {     // to the first set bit
        const unsigned bits = BitsFrom(maskRow, column);
        if (bits != 0) {
            column += std::countl_zero(static_cast<BYTE>(bits));
            break;
        }
        column = (column / 8 + 1) * 8;
    }
    if (column >= width) {
        return false;
    }
    begin = static_cast<int>(column);
    while (column < width) { // to the first clear bit after it
        const std::int64_t left = 8 - column % 8;
        const int ones = std::countl_one(static_cast<BYTE>(BitsFrom(maskRow, column)));
        column += ones;
        if (ones != left) {
            break;
        }
    }
    end = static_cast<int>(std::min<std::int64_t>(column, width));
    return true;
}

} // namespace qv8
