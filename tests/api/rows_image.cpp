#include "api/export_rows.h"

namespace test {
namespace {

// Of the depth of the picture that is not used.
Result CreateImage(const Call& call, Parameters& parameters) {
    const int width = parameters.Number(9, -1, 70);
    const int height = parameters.Number(5, -1, 20);
    const auto red = static_cast<DWORD>(parameters.Number(60, 0, 255));
    const auto green = static_cast<DWORD>(parameters.Number(120, 0, 255));
    const auto blue = static_cast<DWORD>(parameters.Number(250, 0, 255));
    return Single(QV8CreateImage(width, height, static_cast<DWORD>(call.bits), red, green, blue, call.progressOwner,
                                 call.dialog[0], call.dialog[1], call.dialog[2]));
}

Result CopyImage(const Call& call, Parameters&) {
    return Single(QV8CopyImage(call.target.hImage, call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]));
}

constexpr Export kRows[] = {
    {"QV8CreateImage", kAcceptAll, AreaUse::kNone, QV8_STATUS_SUCCESS, kBadDepth, CreateImage},
    {"QV8CopyImage", kAcceptAll | kAcceptOdd, AreaUse::kNone, kBadPicture, kBadPicture, CopyImage},
};

} // namespace

std::span<const Export> ImageRows() {
    return kRows;
}

} // namespace test
