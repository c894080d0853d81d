#include "geometry/rotation.h"

#include <limits>

#include "area/masked_picture.h"
#include "frame/rows.h"
#include "geometry/blending.h"
#include "geometry/free_turn.h"
#include "geometry/mirror_flip.h"
#include "geometry/quarter_turn.h"
#include "pixels/pixel_fill.h"
#include "pixels/pixel_format.h"

namespace qv8 {
namespace {

// Mirroring and flipping happen on the way from the source to the result and take no time of their own, but have their
// part of the progress. Leaves the rest of it in `progress`.
bool ReportExchanges(int height, const RotationOptions& options, Progress& progress) {
    return ForEachExchange(options.mirror, options.flip, progress,
                           [height](Exchange, const Progress& part) { return ForEachRow(height, part, [](int) {}); });
}

bool MakePlane(const DibView& source, const CentredFrame& frame, Plane& plane) {
    constexpr std::int64_t kMaxSide = std::numeric_limits<int>::max();
    if (frame.width > kMaxSide || frame.height > kMaxSide) {
        SetErrorStatus(QV8_STATUS_MEMORY);
        return false;
    }
    plane.source = source;
    plane.result =
        DuplicateDib(source, static_cast<int>(frame.width), static_cast<int>(frame.height), Pixels::kUnwritten);
    plane.unit = *source.layout->unit;
    return static_cast<bool>(plane.result);
}

// The result's frame; that of a quarter turn is exact.
CentredFrame ResultFrame(const CentredFrame& source, const Turn& turn, const RotationOptions& options) {
    if (options.keepSize) {
        return source;
    }
    if (options.angle % kQuarterTurn != 0) {
        return TurnedFrame(turn, source);
    }
    return IsSideways(options.angle / kQuarterTurn)
               ? CentredFrame{source.firstRow, source.firstColumn, source.height, source.width}
               : source;
}

} // namespace

ImageSet RotatePicture(const ImageSet& handles, const RotationOptions& wanted, DWORD progressOwner) {
    MaskedPicture target;
    RotationOptions options = wanted;
    options.angle = std::clamp(wanted.angle, -kMaxAngle, kMaxAngle);
    if (!OpenMaskedPicture(handles, target)) {
        return {};
    }
    const DibView& source = target.image.view;
    options.smooth = options.smooth && CanBlend(source);
    Progress progress{progressOwner};
    if (!ReportExchanges(source.height, options, progress)) {
        return {};
    }
    const Turn turn = TurnBy(options.angle);
    const CentredFrame frame = ResultFrame(FrameOf(source), turn, options);
    Plane image = {};
    Plane maskPlane = {};
    if (!MakePlane(source, frame, image) || (target.mask.lock && !MakePlane(target.mask.view, frame, maskPlane))) {
        return {};
    }
    image.background = PatternOf(source, options.background);
    Plane* const mask = target.mask.lock ? &maskPlane : nullptr;
    const int quarters = options.angle / kQuarterTurn & 3; // a turn backwards is one forth by what is left to four
    const bool done = options.angle % kQuarterTurn == 0 ? TurnQuarters(image, mask, quarters, options, progress)
                                                        : TurnFreely(image, mask, turn, frame, options, progress);
    return done ? ImageSet{image.result.Release(), maskPlane.result.Release()} : ImageSet{};
}

} // namespace qv8
