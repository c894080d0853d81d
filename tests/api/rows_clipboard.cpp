// What the clipboard is to hold before a call is put there by the rows themselves, aside from what is watched.
#include "api/export_rows.h"
#include "support/clipboard.h"

namespace test {
namespace {

// The picture of the call, or any other where it has none.
void PutPictureOnClipboard(const Call& call) {
    hooks::Aside([&] {
        PutOnClipboard(call.target.hImage != nullptr ? ReadBlock(call.target.hImage) : BlankPicture(8, 5, 3).bytes);
    });
}

Result Flag(BOOL succeeded) {
    return {nullptr, nullptr, succeeded != 0};
}

Result SetToClipBrd(const Call& call, Parameters&) {
    return Flag(QV8SetToClipBrd(nullptr, call.target.hImage, call.progressOwner, call.dialog[0], call.dialog[1],
                                call.dialog[2]));
}

Result GetFromClipBrd(const Call& call, Parameters&) {
    PutPictureOnClipboard(call);
    return Single(QV8GetFromClipBrd(nullptr, call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]));
}

Result IsClipBrdData(const Call& call, Parameters&) {
    PutPictureOnClipboard(call);
    return Flag(QV8IsClipBrdData(nullptr));
}

Result ClearClipBrd(const Call& call, Parameters&) {
    PutPictureOnClipboard(call);
    return Flag(QV8ClearClipBrd(nullptr));
}

constexpr unsigned kAny = kAcceptAll | kAcceptOdd;
constexpr int kNoPicture = QV8_STATUS_SUCCESS;

constexpr Export kRows[] = {
    {"QV8SetToClipBrd", kAny, AreaUse::kNone, kBadPicture, kBadPicture, SetToClipBrd, false, kBadPicture, kOnClipboard},
    {"QV8GetFromClipBrd", kAny, AreaUse::kNone, kNoPicture, kBadPicture, GetFromClipBrd, false, kBadPicture,
     kOnClipboard},
    {"QV8IsClipBrdData", kAny, AreaUse::kNone, kNoPicture, kNoPicture, IsClipBrdData, false, kBadPicture,
     kOnClipboard | kUnframed},
    {"QV8ClearClipBrd", kAny, AreaUse::kNone, kNoPicture, kNoPicture, ClearClipBrd, false, kBadPicture,
     kOnClipboard | kUnframed},
};

} // namespace

std::span<const Export> ClipboardRows() {
    return kRows;
}

} // namespace test
