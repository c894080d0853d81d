#include "geometry/rotation.h"

#include <limits>

#include "area/masked_picture.h"
#include "frame/status.h"
#include "geometry/blending.h"
#include "geometry/exchange_reports.h"
#include "geometry/linear_mapping.h"
#include "geometry/quarter_turn.h"
#include "pixels/pixel_fill.h"
#include "pixels/pixel_format.h"

namespace qv8 {
namespace {

bool MakeTurned(const DibView& source, const CentredRect& bounds, TurnedPicture& picture) {
    constexpr std::int64_t kMaxSide = std::numeric_limits<int>::max();
    if (bounds.width > kMaxSide || bounds.height > kMaxSide) {
        return Fail(QV8_STATUS_MEMORY);
    }
    picture.source = source;
    picture.result = DuplicateDib(source, static_cast<int>(bounds.width), static_cast<int>(bounds.height),
                                  InitialPixels::kUnwritten);
    picture.unit = *source.layout->unit;
    return static_cast<bool>(picture.result);
}

// Where the result lies when its centre is laid on that of the source: where the source lies when the size is kept,
// else around the turned corners. Quarter turns only exchange the sides, without the rounding of other angles.
CentredRect ResultBounds(const CentredRect& source, const Turn& turn, const RotationOptions& options) {
    if (options.keepSize) {
        return source;
    }
    if (options.angle % kQuarterTurn != 0) {
        return BoundsOf(turn.forth, source);
    }
    return IsSideways(options.angle / kQuarterTurn)
               ? CentredRect{source.firstRow, source.firstColumn, source.height, source.width}
               : source;
}

} // namespace

ImageSet RotatePicture(const ImageSet& handles, const RotationOptions& wanted, const Progress& whole) {
    MaskedPicture target;
    RotationOptions options = wanted;
    options.angle = std::clamp(wanted.angle, -kMaxAngle, kMaxAngle);
    if (!OpenMaskedPicture(handles, target)) {
        return {};
    }
    const DibView& source = target.image.view;
    options.smooth = options.smooth && CanBlend(source);
    Progress progress = whole;
    if (!ReportExchanges(source.height, options.mirror, options.flip, progress)) {
        return {};
    }
    const bool isQuarterTurn = options.angle % kQuarterTurn == 0;
    const Turn turn = isQuarterTurn ? Turn{} : TurnBy(options.angle);
    const CentredRect bounds = ResultBounds(CentredRectOf(source), turn, options);
    TurnedPicture image;
    TurnedPicture turnedMask = {};
    TurnedPicture* const mask = target.mask.lock ? &turnedMask : nullptr;
    if (!MakeTurned(source, bounds, image) || (mask != nullptr && !MakeTurned(target.mask.view, bounds, *mask))) {
        return {};
    }
    image.background = PatternOf(source, options.background);
    const bool done = isQuarterTurn ? TurnQuarters(image, mask, QuartersOf(options.angle), options, progress)
                                    : MapPicture(image, mask, turn.back, bounds, options, progress);
    return done ? ImageSet{image.result.Release(), turnedMask.result.Release()} : ImageSet{};
}

} // namespace qv8
