#include "support/area.h"

#include <algorithm>
#include <numeric>

#include "support/shapes.h"

namespace test {
namespace {

constexpr AreaForm kForms[] = {AreaForm::kWhole,          AreaForm::kMask,          AreaForm::kPolygonInside,
                               AreaForm::kPolygonOutside, AreaForm::kEllipseInside, AreaForm::kEllipseOutside};

// Cut to the picture, with its sides in order.
RECT Clipped(const RECT& rect, int width, int height) {
    const auto x = std::minmax({std::clamp<LONG>(rect.left, 0, width - 1), std::clamp<LONG>(rect.right, 0, width - 1)});
    const auto y =
        std::minmax({std::clamp<LONG>(rect.top, 0, height - 1), std::clamp<LONG>(rect.bottom, 0, height - 1)});
    return {x.first, y.first, x.second, y.second};
}

// So narrow that hardly anything would be left of its height.
bool IsLine(const RECT& clipped) {
    const LONG width = clipped.right - clipped.left;
    return width > 2 && clipped.bottom - clipped.top >= 2 * (width - 1) * (width - 1);
}

bool IsDefined(const RECT& clipped) {
    return IsDefinedEllipse(clipped.right - clipped.left, clipped.bottom - clipped.top);
}

} // namespace

std::span<const AreaForm> AreaForms() {
    return kForms;
}

const char* NameOf(AreaForm form) {
    switch (form) {
    case AreaForm::kWhole:
        return "whole";
    case AreaForm::kMask:
        return "mask";
    case AreaForm::kPolygonInside:
    case AreaForm::kPolygonOutside:
        return "polygon";
    default:
        return "ellipse";
    }
}

Area RandomArea(AreaForm form, int width, int height, Random& random) {
    const auto anyX = [&] { return static_cast<LONG>(random.Between(-3, width + 2)); };
    const auto anyY = [&] { return static_cast<LONG>(random.Between(-3, height + 2)); };
    Area area;
    area.inside = form == AreaForm::kPolygonOutside || form == AreaForm::kEllipseOutside ? 0 : random.Between(1, 9);
    switch (form) {
    case AreaForm::kWhole:
        area.type = QV8_AREA_WHOLE;
        break;
    case AreaForm::kMask:
        area.type = QV8_AREA_MASK;
        break;
    case AreaForm::kPolygonInside:
    case AreaForm::kPolygonOutside:
        area.type = QV8_AREA_POLYGON;
        for (int left = random.Between(2, 9); left != 0; --left) {
            const LONG x = anyX();
            area.points.push_back({x, anyY()});
        }
        break;
    default:
        area.type = QV8_AREA_ELLIPSE;
        do {
            area.rect.left = anyX();
            area.rect.top = anyY();
            area.rect.right = anyX();
            area.rect.bottom = anyY();
        } while (IsLine(Clipped(area.rect, width, height)));
        while (!IsDefined(Clipped(area.rect, width, height))) {
            area.rect.bottom = std::midpoint(area.rect.top, area.rect.bottom);
        }
    }
    return area;
}

Picture RandomMask(int width, int height, Random& random) {
    Picture mask = RandomPicture(LayoutNamed("1"), width, height, random);
    for (std::size_t i = mask.PixelOffset(); i != mask.bytes.size(); ++i) {
        if (random.Chance(50)) {
            mask.bytes[i] = random.Chance(50) ? 0xFF : 0;
        }
    }
    return mask;
}

} // namespace test
