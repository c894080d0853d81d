#include "api/export_rows.h"

namespace test {
namespace {

Result ConvertColor(const Call& call, Parameters& parameters) {
    static constexpr DWORD kTargets[] = {24, 32, 16, QV8_DEPTH_GREY, 8, 4, 1};
    DWORD depth = parameters.OneOf(kTargets);
    if (depth == static_cast<DWORD>(call.bits)) {
        depth = call.bits == 24 ? 32 : 24;
    }
    const BOOL fixedPalette = parameters.Flag(0);
    const BOOL dither = parameters.Flag(0);
    const int threshold = parameters.Number(128, 0, 255);
    return Single(QV8ConvertColor(call.target.hImage, depth, fixedPalette, dither, static_cast<DWORD>(threshold),
                                  call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]));
}

constexpr Export kRows[] = {
    {"QV8ConvertColor", kAcceptAll, AreaUse::kNone, kUntouched, kBadParameter, ConvertColor, false, kBadPicture,
     kKeepsStatus},
};

} // namespace

std::span<const Export> ConvertRows() {
    return kRows;
}

} // namespace test
