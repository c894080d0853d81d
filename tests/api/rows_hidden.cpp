#include "api/export_rows.h"

namespace test {
namespace {

// Made before any call is watched, and never freed.
HGLOBAL ThePattern() {
    static const HGLOBAL pattern = [] {
        Random random(90);
        return MakeBlock(RandomPicture(LayoutNamed("1"), 37, 11, random).bytes).release();
    }();
    return pattern;
}

// With a pattern: texts look different on every system. Hostile calls have texts too.
Result SetSecretImage(const Call& call, Parameters& parameters) {
    const LONG strength = parameters.Wild(30, -300, 300);
    const LONG left = parameters.Wild(2, -40, 40);
    const LONG top = parameters.Wild(-1, -14, 20);
    if (!parameters.IsHostile()) {
        return Single(QV8SetSecretImage(call.target.hImage, ThePattern(), nullptr, nullptr, 0, 0, 0, 0, 0, 0, 0,
                                        strength, left, top, 0, 0, call.progressOwner, call.dialog[0], call.dialog[1],
                                        call.dialog[2]));
    }
    const HGLOBAL pattern = parameters.Index(2) == 0 ? call.second : nullptr;
    const std::string text = parameters.Text(130);
    const std::string faceName = parameters.Text(34);
    DWORD own[7];
    for (DWORD& number : own) {
        number = static_cast<DWORD>(parameters.Number(0, 0, 12));
    }
    const int right = parameters.Number(9, -3, 30);
    const int bottom = parameters.Number(5, -3, 30);
    return Single(QV8SetSecretImage(call.target.hImage, pattern, parameters.Pointer(text.c_str()),
                                    parameters.Pointer(faceName.c_str()), own[0], own[1], own[2], own[3], own[4],
                                    own[5], 90 * own[6], strength, left, top, right, bottom, call.progressOwner,
                                    call.dialog[0], call.dialog[1], call.dialog[2]));
}

Result CheckSecretImage(const Call& call, Parameters& parameters) {
    const LONG threshold = parameters.Wild(10, -260, 260);
    return Single(QV8CheckSecretImage(call.target.hImage, call.second, threshold, call.progressOwner, call.dialog[0],
                                      call.dialog[1], call.dialog[2]));
}

constexpr Export kRows[] = {
    {"QV8SetSecretImage", kAccept24, AreaUse::kNone, kBadPicture, kBadPicture, SetSecretImage, false, kBadPicture,
     kDrawsText},
    {"QV8CheckSecretImage", kAccept24, AreaUse::kNone, kBadPicture, kBadPicture, CheckSecretImage, true},
};

} // namespace

std::span<const Export> HiddenRows() {
    ThePattern();
    return kRows;
}

} // namespace test
