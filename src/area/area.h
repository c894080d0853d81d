// The area of effect: the part of a picture that an effect may change, as a rectangle and an optional mask.
#pragma once

#include "pixels/dib.h"

namespace qv8 {

// What an export is to work on: the pictures that it is handed, and the five arguments that name an area of them, with
// the rectangle by value.
struct AreaArguments {
    ImageSet target; // the mask counts where areaType asks for it only
    BYTE areaType;
    const POINT* points;
    int pointCount;
    RECT rect;
    bool inside;
};

// Inclusive columns and rows, rows counted from the bottom.
struct WorkRect {
    int left = 0;
    int firstRow = 0;
    int right = 0;
    int lastRow = 0;

    int Width() const {
        return right - left + 1;
    }
    int Height() const {
        return lastRow - firstRow + 1;
    }
};

// A resolved area. Its mask, when there is one, has its first bit at the rectangle's first column and row.
struct Area {
    WorkRect rect;
    const BYTE* mask = nullptr;
    std::size_t maskStride = 0;

    LockedBlock maskMemory; // without a block for a caller's mask
};

// The point moved to the nearest place inside the picture; rows count from the top or the bottom alike.
POINT PointWithin(const DibView& picture, const POINT& point);

// The rectangle with its corners moved so and its sides in order.
RECT RectWithin(const DibView& picture, const RECT& rect);

// Resolves the area of the target, which is open. Sets status 2, 3, 5 or 7 when it fails.
bool ResolveArea(const DibView& picture, const AreaArguments& arguments, Area& area);

// What an effect on an area begins with: OpenPicture of the target, the verdict on the effect's own parameters (status
// 5 when they are bad, which tells of a bad picture first and of a bad area last), and ResolveArea.
bool OpenArea(const AreaArguments& arguments, unsigned acceptFlags, bool parametersAreGood, Picture& picture,
              Area& area);

// Whether `mask` is a 1-bit picture of the picture's size; else sets status 7.
bool IsMaskSizeOf(const DibView& picture, const DibView& mask);

// Opens a mask of the picture's size; sets status 7 or 3.
bool OpenMask(HGLOBAL hMask, const DibView& picture, Picture& mask);

// The runs of pixels inside the area in one row, as use(column, count) from left to right.
template <class Use>
void ForEachRun(const Area& area, int row, Use use);

// Finds the first run of set bits at or after `begin`. Returns false when none is left before `width`.
bool NextRun(const BYTE* maskRow, int width, int& begin, int& end);

template <class Use>
void ForEachRun(const Area& area, int row, Use use) {
    const int width = area.rect.Width();
    if (area.mask == nullptr) {
        use(area.rect.left, width);
        return;
    }
    const BYTE* const maskRow = area.mask + static_cast<std::size_t>(row - area.rect.firstRow) * area.maskStride;
    int begin = 0;
    int end = 0;
    while (NextRun(maskRow, width, begin, end)) {
        use(area.rect.left + begin, end - begin);
        begin = end;
    }
}

} // namespace qv8
