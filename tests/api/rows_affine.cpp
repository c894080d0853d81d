#include <utility>

#include "api/export_rows.h"

namespace test {
namespace {

// Its topmost row is row 1, so that the last report, which names rows from the top of the picture, is the end.
Result Affine(const Call& call, Parameters& parameters) {
    const LONG slant = parameters.Flag(1) ? 9 : 2; // with the smaller one, some areas are upright enough to be copied
    const auto around = [&](LONG typical, LONG place) { return parameters.Wild(typical, place, place + slant); };
    POINT corners[4] = {{around(3, 0), around(4, 12)},
                        {around(0, 0), around(1, 0)},
                        {around(8, 14), around(1, 0)},
                        {around(8, 14), around(4, 12)}};
    const std::size_t one = parameters.Index(4);
    const std::size_t other = parameters.Index(4);
    std::swap(corners[one], corners[other]);
    return Single(QV8Affine(call.target.hImage, corners[0].x, corners[0].y, corners[1].x, corners[1].y, corners[2].x,
                            corners[2].y, corners[3].x, corners[3].y, call.progressOwner, call.dialog[0],
                            call.dialog[1], call.dialog[2]));
}

constexpr Export kRows[] = {
    {"QV8Affine", kAcceptAll, AreaUse::kNone, kBadPicture, kBadPicture, Affine, false, kBadPicture, kKeepsStatus},
};

} // namespace

std::span<const Export> AffineRows() {
    return kRows;
}

} // namespace test
