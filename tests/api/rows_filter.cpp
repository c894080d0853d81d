#include "api/export_rows.h"

namespace test {
namespace {

Result CustomFilter(const Call& call, Parameters& parameters) {
    LONG kernel[81] = {};
    for (LONG& weight : kernel) {
        weight = parameters.Number(1, 0, 3) == 0 ? parameters.Wild(2, -300, 300) : parameters.Number(0, -1, 2);
    }
    const auto divisor = static_cast<DWORD>(parameters.Number(81, 1, 255));
    const auto offset = static_cast<DWORD>(parameters.Number(0, 0, 511));
    const BOOL red = parameters.Flag(1);
    const BOOL green = parameters.Flag(1);
    const BOOL blue = parameters.Flag(1);
    return Single(
        CallWithArea(QV8CustomFilter, call, parameters.Pointer(&kernel[0]), divisor, offset, red, green, blue));
}

Result Sharp(const Call& call, Parameters& parameters) {
    return Single(CallWithArea(QV8Sharp, call, static_cast<DWORD>(parameters.Number(30, 0, 300))));
}

Result Emboss(const Call& call, Parameters& parameters) {
    const auto direction = static_cast<DWORD>(parameters.Number(1, 0, 7));
    const auto depth = static_cast<DWORD>(parameters.Number(3, 0, 7));
    const auto base = static_cast<DWORD>(parameters.Number(128, 0, 511));
    return Single(CallWithArea(QV8Emboss, call, direction, depth, base));
}

Result Shade(const Call& call, Parameters& parameters) {
    return Single(CallWithArea(QV8Shade, call, static_cast<DWORD>(parameters.Number(2, 0, 22))));
}

constexpr unsigned kFilterLayouts = kAccept8Grey | kAccept16 | kAccept24 | kAccept32;

constexpr Export kRows[] = {
    {"QV8CustomFilter", kFilterLayouts, AreaUse::kAlways, kBadPicture, kBadPicture, CustomFilter},
    {"QV8Sharp", kFilterLayouts, AreaUse::kAlways, kBadPicture, kBadPicture, Sharp},
    {"QV8Emboss", kFilterLayouts, AreaUse::kAlways, kBadPicture, kBadPicture, Emboss},
    {"QV8Shade", kFilterLayouts, AreaUse::kAlways, kBadPicture, kBadPicture, Shade},
};

} // namespace

std::span<const Export> FilterRows() {
    return kRows;
}

} // namespace test
