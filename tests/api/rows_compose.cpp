#include "api/export_rows.h"

namespace test {
namespace {

Result Layer(const Call& call, Parameters& parameters) {
    static constexpr DWORD kOpacities[] = {128, 0, 255, 1, 254, 0xFFFFFF80};
    const DWORD opacity = parameters.OneOf(kOpacities);
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

Result PasteImage(const Call& call, Parameters& parameters) {
    static constexpr LONG kAngles[] = {3000, 0, 9000, -9000, 18000, 27000, 36100};
    LONG angle = parameters.OneOf(kAngles);
    angle = parameters.Flag(0) ? parameters.Wild(3000, -36100, 36100) : angle;
    const BOOL mirror = parameters.Flag(1);
    const BOOL flip = parameters.Flag(1);
    static constexpr DWORD kOpacities[] = {200, 0, 255, 1, 0xFFFFFF80};
    const DWORD opacity = parameters.OneOf(kOpacities);
    const BYTE clear[] = {static_cast<BYTE>(parameters.Number(0, 0, 255)),
                          static_cast<BYTE>(parameters.Number(0, 0, 255)),
                          static_cast<BYTE>(parameters.Number(0, 0, 255))};
    const bool isClear = parameters.Flag(1) != 0;
    const LONG x = parameters.Wild(4, -40, 100);
    const LONG y = parameters.Wild(2, -20, 40);
    const ImageSet pasted = {call.second, call.target.hMask};
    return Single(QV8PasteImage(call.target.hImage, parameters.Pointer(&pasted), angle, mirror, flip, opacity,
                                isClear ? &clear[0] : nullptr, parameters.Pointer(&clear[1]), &clear[2], x, y,
                                static_cast<DWORD>(parameters.Flag(0)), call.progressOwner, call.dialog[0],
                                call.dialog[1], call.dialog[2]));
}

constexpr Export kRows[] = {
    {"QV8Layer", kAcceptAll, AreaUse::kNone, kBadPicture, kBadDepth, Layer, true, kBadDepth},
    {"QV8PasteImage", kAcceptAll, AreaUse::kMaskAlong, kBadPicture, kBadPicture, PasteImage, true},
};

} // namespace

std::span<const Export> ComposeRows() {
    return kRows;
}

} // namespace test
