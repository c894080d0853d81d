#include "api/export_rows.h"

namespace test {
namespace {

// Points of the base stay close together, so that no result of the scaling is large.
Result Panorama(const Call& call, Parameters& parameters) {
    static constexpr DWORD kSeams[] = {1, 2, 0, 3, 0xFFFFFF02};
    const DWORD seamMode = parameters.OneOf(kSeams);
    const LONG a1x = parameters.Number(1, -3, 20);
    const LONG a1y = parameters.Number(1, -3, 20);
    const LONG a2x = parameters.Number(6, -3, 20);
    const LONG a2y = parameters.Number(3, -3, 20);
    const LONG b1x = parameters.Wild(2, -3, 40);
    const LONG b1y = parameters.Wild(1, -3, 24);
    const LONG b2x = parameters.Wild(5, -3, 40);
    const LONG b2y = parameters.Wild(3, -3, 24);
    const BYTE clear[] = {parameters.Number(0, 0, 1) != 0 ? BYTE{255} : BYTE{0}, 0, 0};
    const BYTE* const red = parameters.Flag(0) ? &clear[0] : nullptr;
    return Single(QV8Panorama(call.target.hImage, call.second, seamMode, a1x, a1y, a2x, a2y, b1x, b1y, b2x, b2y, red,
                              &clear[1], &clear[2], call.progressOwner, call.dialog[0], call.dialog[1],
                              call.dialog[2]));
}

constexpr Export kRows[] = {
    {"QV8Panorama", kAccept24, AreaUse::kNone, kBadPicture, kBadPicture, Panorama, true},
};

} // namespace

std::span<const Export> PanoramaRows() {
    return kRows;
}

} // namespace test
