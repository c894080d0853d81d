#include "model/preview_plan.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr LONG kWidestNeighbourhood = 21; // the largest radius, and a pixel for the filter itself

bool IsPixels(const catalogue::Parameter& parameter) {
    return parameter.unit == std::string("pixels");
}

LONG Mapped(LONG position, LONG origin, double scale) {
    return static_cast<LONG>(
        std::clamp(std::round((static_cast<double>(position) - static_cast<double>(origin)) * scale), -2147483647.0,
                   2147483647.0));
}

// Positions move with the part and shrink; sizes of results shrink. Other numbers stay, whatever their unit: they are
// of effects that are previewed at full size.
struct Mapping {
    const catalogue::Parameter& parameter;
    POINT origin;
    Extent scale;

    catalogue::Value operator()(LONG number) const {
        const std::string name = parameter.name;
        if (parameter.kind == catalogue::Kind::kWidth) {
            return std::max<LONG>(1, Mapped(number, 0, scale.width));
        }
        if (parameter.kind == catalogue::Kind::kHeight) {
            return std::max<LONG>(1, Mapped(number, 0, scale.height));
        }
        if (IsPixels(parameter) && name == "x") {
            return Mapped(number, origin.x, scale.width);
        }
        return IsPixels(parameter) && name == "y" ? Mapped(number, origin.y, scale.height) : number;
    }
    catalogue::Value operator()(std::vector<POINT> points) const {
        for (POINT& point : points) {
            point = {Mapped(point.x, origin.x, scale.width), Mapped(point.y, origin.y, scale.height)};
        }
        return points;
    }
    catalogue::Value operator()(const RECT& rect) const {
        return RECT{Mapped(rect.left, origin.x, scale.width), Mapped(rect.top, origin.y, scale.height),
                    Mapped(rect.right, origin.x, scale.width), Mapped(rect.bottom, origin.y, scale.height)};
    }
    template <class Type>
    catalogue::Value operator()(const Type& value) const {
        return value;
    }
};

// The first corner of what is marked; nothing for the whole picture.
Position CornerOfArea(const ParameterValues& values) {
    if (const auto* const points = std::get_if<std::vector<POINT>>(&values.Get("polygon")); points != nullptr) {
        Position corner{2147483647.0, 2147483647.0};
        for (const POINT& point : *points) {
            corner = {std::min<double>(corner.x, point.x), std::min<double>(corner.y, point.y)};
        }
        return {std::max(0.0, corner.x), std::max(0.0, corner.y)};
    }
    const auto* const rect = std::get_if<RECT>(&values.Get("ellipse"));
    return rect != nullptr ? Position{std::max<double>(0, rect->left), std::max<double>(0, rect->top)} : Position{};
}

double NumberOr0(const catalogue::Value& value) {
    const LONG* const number = std::get_if<LONG>(&value);
    return number != nullptr ? static_cast<double>(*number) : 0;
}

} // namespace

PreviewPlan PlanPreview(const catalogue::Effect& effect, double zoom) {
    const double enough = std::min(zoom, 1.0);
    const bool isMosaic = effect.name == std::string("mosaic"); // whose blocks begin at the corner of the whole area
    switch (effect.family) {
    case catalogue::Family::kTone:
        return {enough, true, 0};
    case catalogue::Family::kFilter:
        return isMosaic ? PreviewPlan{} : PreviewPlan{1, true, kWidestNeighbourhood};
    case catalogue::Family::kGeometry:
    case catalogue::Family::kComposition:
    case catalogue::Family::kSelection:
        return {enough, false, 0};
    default:
        return {};
    }
}

RECT PartFor(const RECT& visible, LONG margin, LONG width, LONG height) {
    RECT part;
    part.left = std::clamp<LONG>(visible.left - margin, 0, width - 1);
    part.top = std::clamp<LONG>(visible.top - margin, 0, height - 1);
    part.right = std::clamp<LONG>(visible.right + margin, part.left + 1, width);
    part.bottom = std::clamp<LONG>(visible.bottom + margin, part.top + 1, height);
    return part;
}

ParameterValues MappedValues(const ParameterValues& values, POINT origin, Extent scale) {
    ParameterValues mapped = values;
    for (const Setting& setting : values.Settings()) {
        mapped.Set(setting.parameter->name, std::visit(Mapping{*setting.parameter, origin, scale}, setting.value));
    }
    return mapped;
}

Position CornerOfResult(const ParameterValues& values, Extent picture, Extent result) {
    const std::string name = values.Effect().name;
    if (name == "rotation") {
        return {(picture.width - result.width) / 2, (picture.height - result.height) / 2};
    }
    if (name == "affine") { // beside the picture, on which its corners are dragged
        return {1.02 * picture.width, 0};
    }
    if (name == "layer" && (result.width != picture.width || result.height != picture.height)) {
        return {std::min(0.0, NumberOr0(values.Get("x"))), std::min(0.0, NumberOr0(values.Get("y")))};
    }
    return values.Effect().family == catalogue::Family::kSelection && NumberOr0(values.Get("outside")) == 0
               ? CornerOfArea(values)
               : Position{};
}
