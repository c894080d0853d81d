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

// With a pattern: texts look different on every system.
Result SetSecretImage(const Call& call, Parameters& parameters) {
    const LONG strength = parameters.Wild(30, -300, 300);
    const LONG left = parameters.Wild(2, -40, 40);
    const LONG top = parameters.Wild(-1, -14, 20);
    return Single(QV8SetSecretImage(call.target.hImage, ThePattern(), nullptr, nullptr, 0, 0, 0, 0, 0, 0, 0, strength,
                                    left, top, 0, 0, call.progressOwner, call.dialog[0], call.dialog[1],
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

} // namespace

std::span<const Export> HiddenRows() {
    ThePattern();
    return kRows;
}

} // namespace test
