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

bool UseDrawnMask(GlobalBlock drawn, Area& area) {
    if (!drawn) {
        return false;
    }
    area.maskMemory = HoldBlock(drawn.release());
    if (!area.maskMemory) {
        return false;
    }
    area.mask = area.maskMemory.As<BYTE>() + kMaskHeaderBytes;
    area.maskStride = static_cast<std::size_t>(DibRowBytes(1, area.rect.Width()));
    return true;
}

bool UsePolygon(const DibView& picture, const AreaArguments& arguments, Area& area) {
    if (arguments.pointCount < 2 || arguments.points == nullptr) {
        return Fail(QV8_STATUS_PARAMETER);
    }
    const int maxY = picture.height - 1;
    RECT box = {};
    const LockedBlock points =
        ClipPolygon(arguments.points, arguments.pointCount, picture.width - 1, maxY, arguments.inside, box);
    if (!points) {
        return false;
    }
    area.rect = ToMemoryRows(box, maxY);
    return UseDrawnMask(CreateAreaMask(area.rect.Width(), area.rect.Height(), QV8_AREA_POLYGON, points.As<POINT>(),
                                       arguments.pointCount, box, arguments.inside),
                        area);
}

bool UseEllipse(const DibView& picture, const AreaArguments& arguments, Area& area) {
    RECT box = {};
    const RECT shape = ClipEllipseRect(picture, arguments.rect, arguments.inside, box);
    area.rect = ToMemoryRows(box, picture.height - 1);
    return UseDrawnMask(
        CreateAreaMask(area.rect.Width(), area.rect.Height(), QV8_AREA_ELLIPSE, nullptr, 0, shape, arguments.inside),
        area);
}

} // namespace

bool ResolveArea(const DibView& picture, HGLOBAL hMask, const AreaArguments& arguments, Area& area) {
    switch (arguments.areaType) {
    case QV8_AREA_MASK:
        return UseCallersMask(picture, hMask, area);
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

bool IsMaskSizeOf(const DibView& picture, const DibView& mask) {
    if (mask.bitCount == 1 && mask.width == picture.width && mask.height == picture.height) {
        return true;
    }
    return Fail(QV8_STATUS_PICTURE);
}

bool OpenMask(HGLOBAL hMask, const DibView& picture, Picture& mask) {
    return LockPicture(hMask, mask) && CheckPicture(mask) && IsMaskSizeOf(picture, mask.view);
}

LockedBlock ClipPolygon(const POINT* points, int pointCount, int maxX, int maxY, bool inside, RECT& rect) {
    const auto count = static_cast<std::size_t>(pointCount);
    LockedBlock block = AllocateWorkingBlock(std::uint64_t{count} * sizeof(POINT));
    if (!block) {
        return block;
    }
    auto* const clipped = block.As<POINT>();
    rect = {maxX, maxY, 0, 0};
    for (std::size_t i = 0; i != count; ++i) {
        clipped[i].x = std::clamp<LONG>(points[i].x, 0, maxX);
        clipped[i].y = std::clamp<LONG>(points[i].y, 0, maxY);
        rect.left = std::min(rect.left, clipped[i].x);
        rect.top = std::min(rect.top, clipped[i].y);
        rect.right = std::max(rect.right, clipped[i].x);
        rect.bottom = std::max(rect.bottom, clipped[i].y);
    }
    if (!inside) {
        rect = {0, 0, maxX, maxY};
        return block;
    }
    for (std::size_t i = 0; i != count; ++i) {
        clipped[i].x -= rect.left;
        clipped[i].y -= rect.top;
    }
    return block;
}

RECT RectWithin(const DibView& picture, const RECT& rect) {
    const auto column = [&](LONG x) { return std::clamp<LONG>(x, 0, picture.width - 1); };
    const auto row = [&](LONG y) { return std::clamp<LONG>(y, 0, picture.height - 1); };
    const auto [left, right] = std::minmax({column(rect.left), column(rect.right)});
    const auto [top, bottom] = std::minmax({row(rect.top), row(rect.bottom)});
    return {left, top, right, bottom};
}

RECT ClipEllipseRect(const DibView& picture, const RECT& ellipse, bool inside, RECT& rect) {
    const RECT clipped = RectWithin(picture, ellipse);
    if (!inside) {
        rect = {0, 0, picture.width - 1, picture.height - 1};
        return clipped;
    }
    rect = clipped;
    return {0, 0, clipped.right - clipped.left, clipped.bottom - clipped.top};
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
