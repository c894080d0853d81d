// Areas of effect, random ones of every form.
#pragma once

#include <span>
#include <vector>

#include "qv8effect.h"
#include "support/picture.h"

namespace test {

// The area arguments of a call. The mask of a mask area belongs to the call's target.
struct Area {
    DWORD type = QV8_AREA_WHOLE;
    std::vector<POINT> points;
    RECT rect = {};
    QV8BOOL inside = 1;
    bool omitPoints = false; // a null pointer in their place
    bool omitRect = false;
    int fewer = 0; // points that are there but not counted; above their number, the count is below 0

    const POINT* Points() const {
        return omitPoints ? nullptr : points.data();
    }
    int Count() const {
        return static_cast<int>(points.size()) - fewer;
    }
    const RECT* Rect() const {
        return omitRect ? nullptr : &rect;
    }
};

enum class AreaForm { kWhole, kMask, kPolygonInside, kPolygonOutside, kEllipseInside, kEllipseOutside };

std::span<const AreaForm> AreaForms();
const char* NameOf(AreaForm form); // inside and outside share a name

// Shapes reach beyond the picture now and then, and their sides come in any order.
Area RandomArea(AreaForm form, int width, int height, Random& random);
// A mask with random bits, in clusters, under random colours.
Picture RandomMask(int width, int height, Random& random);

} // namespace test
