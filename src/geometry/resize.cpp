#include "geometry/resize.h"

#include "area/area.h"
#include "geometry/resize_smooth.h"
#include "pixels/pixel_format.h"

namespace qv8 {

ImageSet ResizePicture(const ImageSet& source, int width, int height, bool smooth, const Progress& progress) {
    Picture picture;
    Picture mask;
    if (!OpenPicture(source.hImage, kAcceptAll, picture) ||
        (source.hMask != nullptr && !OpenMask(source.hMask, picture.view, mask))) {
        return {};
    }
    const DibView& view = picture.view;
    NewPicture result = DuplicateDib(view, width, height, InitialPixels::kUnwritten);
    if (!result) {
        return {};
    }
    NewPicture resultMask;
    if (mask.lock) {
        resultMask = DuplicateDib(mask.view, width, height, InitialPixels::kUnwritten);
        if (!resultMask) {
            return {};
        }
    }
    ResizeTask task = {&view,       mask.lock ? &mask.view : nullptr,  &result,
                       &resultMask, MakeScaledSide(view.width, width), MakeScaledSide(view.height, height),
                       {}};
    if (!MakeColumnMap(task.columns, task.map)) {
        return {};
    }
    const bool done =
        smooth && CanBlend(view)
            ? ResizeSmoothly(task, progress)
            : ForEachBand(task, progress, [&](const PixelGroup& rows) { CopyBand(view, result, task.map, rows); });
    if (!done) {
        return {};
    }
    return {result.Release(), resultMask ? resultMask.Release() : nullptr};
}

} // namespace qv8
