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

// With a pattern: texts look different on every system, and have rows of their own.
Result SetSecretImage(const Call& call, Parameters& parameters) {
    const LONG strength = parameters.Wild(30, -300, 300);
    const LONG left = parameters.Wild(2, -40, 40);
    const LONG top = parameters.Wild(-1, -14, 20);
    const HGLOBAL pattern = parameters.IsHostile() ? call.second : ThePattern();
    return Single(QV8SetSecretImage(call.target.hImage, pattern, nullptr, nullptr, 0, 0, 0, 0, 0, 0, 0, strength, left,
                                    top, 0, 0, call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]));
}

Result SetHostileText(const Call& call, Parameters& parameters) {
    const std::string text = parameters.Text(130);
    const std::string faceName = parameters.Text(34);
    DWORD own[7];
    for (DWORD& number : own) {
        number = static_cast<DWORD>(parameters.Number(0, 0, 12));
    }
    int place[5];
    for (int& number : place) {
        number = parameters.Number(0, -3, 30);
    }
    return Single(QV8SetSecretImage(call.target.hImage, nullptr, parameters.Pointer(text.c_str()),
                                    parameters.Pointer(faceName.c_str()), own[0], own[1], own[2], own[3], own[4],
                                    own[5], 90 * own[6], place[0], place[1], place[2], place[3], place[4],
                                    call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]));
}

template <DWORD kDirection>
Result SetSecretText(const Call& call, Parameters& parameters) {
    if (parameters.IsHostile()) {
        return SetHostileText(call, parameters);
    }
    return Single(QV8SetSecretImage(call.target.hImage, nullptr, kDirection == 0 ? "I." : "I\n.", "", 4, 0, 0, 1, 1,
                                    kDirection, 0, 9, 0, 0, 8, 4, call.progressOwner, call.dialog[0], call.dialog[1],
                                    call.dialog[2]));
}

Result CheckSecretImage(const Call& call, Parameters& parameters) {
    const LONG threshold = parameters.Wild(10, -260, 260);
    return Single(QV8CheckSecretImage(call.target.hImage, call.second, threshold, call.progressOwner, call.dialog[0],
                                      call.dialog[1], call.dialog[2]));
}

constexpr Export kRows[] = {
    {"QV8SetSecretImage", kAccept24, AreaUse::kNone, kBadPicture, kBadPicture, SetSecretImage},
    {"QV8CheckSecretImage", kAccept24, AreaUse::kNone, kBadPicture, kBadPicture, CheckSecretImage, true},
};

// On a line, and in columns.
constexpr Export kTextRows[] = {
    {"QV8SetSecretImage", kAccept24, AreaUse::kNone, kBadPicture, kBadPicture, SetSecretText<0>, false, kBadPicture,
     kDrawsText},
    {"QV8SetSecretImage", kAccept24, AreaUse::kNone, kBadPicture, kBadPicture, SetSecretText<2>, false, kBadPicture,
     kDrawsText},
};

} // namespace

std::span<const Export> HiddenRows() {
    ThePattern();
    return kRows;
}

std::span<const Export> TextRows() {
    return kTextRows;
}

} // namespace test
