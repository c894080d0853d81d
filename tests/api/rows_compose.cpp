#include "api/export_rows.h"

namespace test {
namespace {

Result Layer(const Call& call, Parameters& parameters) {
    static constexpr DWORD kOpacities[] = {128, 0, 255, 1, 254, 0xFFFFFF80};
    const DWORD opacity = kOpacities[parameters.Number(0, 0, 5)];
    DWORD levels[6];
    for (DWORD& level : levels) {
        level = static_cast<DWORD>(parameters.Number(200, 0, 300)); // the low byte counts
    }
    const int x = parameters.Number(4, -40, 40);
    const int y = parameters.Number(-3, -20, 20);
    return Single(QV8Layer(call.target.hImage, call.second, opacity, levels[0], levels[1], levels[2], levels[3],
                           levels[4], levels[5], x, y, parameters.Flag(0), call.progressOwner, call.dialog[0],
                           call.dialog[1], call.dialog[2]));
}

constexpr Export kRows[] = {
    {"QV8Layer", kAcceptAll, AreaUse::kNone, kBadPicture, kBadDepth, Layer, true, kBadDepth},
};

} // namespace

std::span<const Export> ComposeRows() {
    return kRows;
}

} // namespace test
