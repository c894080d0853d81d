#include "compose/panorama.h"

#include "compose/seam_mask.h"
#include "frame/status.h"
#include "geometry/resize.h"

namespace qv8 {
namespace {

bool AreOne(POINT a, POINT b) {
    return a.x == b.x && a.y == b.y;
}

// What is known of the join once the pictures have been looked at.
struct Join {
    PanoramaFit fit;
    GlobalBlock seam; // mask of the added picture; null to paste all of it
};

bool PlanJoin(HGLOBAL baseImage, HGLOBAL addedImage, const PanoramaOptions& options, Join& join) {
    Picture base;
    Picture added;
    if (!LockPicture(baseImage, base) || !LockPicture(addedImage, added)) {
        return false;
    }
    for (Picture* const picture : {&base, &added}) {
        if (!CheckPicture(*picture) || !CheckDibFormat(picture->view, kAccept24)) {
            return false;
        }
    }
    const Segment onBase = SegmentInside(base.view, options.base1, options.base2);
    const Segment onAdded = SegmentInside(added.view, options.added1, options.added2);
    join.fit = FitPanorama(base.view, onBase, added.view, onAdded);
    if (options.seamMode != 1 && options.seamMode != 2) {
        return true;
    }
    join.seam = CreateSeamMask(added.view.width, added.view.height, onAdded,
                               options.seamMode == 1 ? SeamSide::kFirst : SeamSide::kSecond);
    return join.seam != nullptr;
}

} // namespace

HGLOBAL JoinPanorama(HGLOBAL baseImage, HGLOBAL addedImage, const PanoramaOptions& options, const Progress& progress) {
    if (baseImage == nullptr || addedImage == nullptr) {
        return Fail(QV8_STATUS_PICTURE);
    }
    if (AreOne(options.base1, options.base2) || AreOne(options.added1, options.added2)) {
        return Fail(QV8_STATUS_PARAMETER);
    }
    Join join = {};
    if (!PlanJoin(baseImage, addedImage, options, join)) {
        return nullptr;
    }
    const PanoramaFit& fit = join.fit;
    const ImageSet scaled =
        ResizePicture({addedImage, join.seam.get()}, fit.width, fit.height, true, progress.Slice(0, 50));
    const GlobalBlock image(scaled.hImage);
    const GlobalBlock mask(scaled.hMask);
    if (!image) {
        return nullptr;
    }
    const PasteOptions paste = {fit.angle, false, false, 255, options.transparent, fit.x, fit.y, true};
    return PasteImage(baseImage, scaled, paste, progress.Slice(50, 100));
}

} // namespace qv8
