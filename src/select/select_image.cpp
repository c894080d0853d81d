#include "select/select_image.h"

#include "frame/progress.h"
#include "select/cut_out.h"

namespace qv8 {
namespace {

// The whole picture is a shape as any other: a polygon through its corners.
bool ResolveDrawnShape(const DibView& picture, AreaArguments arguments, Area& area) {
    const POINT corners[] = {
        {0, 0}, {0, picture.height - 1}, {picture.width - 1, picture.height - 1}, {picture.width - 1, 0}};
    if (arguments.areaType == QV8_AREA_WHOLE) {
        arguments.areaType = QV8_AREA_POLYGON;
        arguments.points = corners;
        arguments.pointCount = 4;
    }
    return ResolveShape(picture, arguments, area);
}

} // namespace

ImageSet SelectImage(const AreaArguments& areaArguments, const RGBQUAD& background, const Progress& progress) {
    Picture source;
    Area area;
    if (!OpenPicture(areaArguments.target.hImage, kAcceptAll, source) ||
        !ResolveDrawnShape(source.view, areaArguments, area)) {
        return {};
    }
    NewPicture result = CreateCutOut(source.view, area);
    if (!result) {
        return {};
    }
    const PixelPattern pattern = PackedPatternOf(source.view, background);
    const int last = area.rect.lastRow - area.rect.firstRow;
    const bool done = progress.RunWithoutFloats([&] {
        for (int row = area.rect.firstRow; row <= area.rect.lastRow; ++row) {
            CutRow(source.view, area, pattern, PixelCopy::kExact, row, result);
            // The row counts within the source, so that the percentage of a box higher up runs ahead: callers know it
            // so.
            if (!progress.Report(row, last)) {
                return false;
            }
        }
        return true;
    });
    return done ? ImageSet{result.Release(), area.maskMemory.Release()} : ImageSet{};
}

} // namespace qv8
