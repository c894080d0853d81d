#include "api/export_rows.h"

namespace test {
namespace {

Result RemoveNoise(const Call& call, Parameters& parameters) {
    const auto mode = static_cast<DWORD>(parameters.Number(0, 0, 2));
    const auto sensitivity = static_cast<DWORD>(parameters.Number(200, 0, 511));
    return Single(CallWithArea(QV8RemoveNoise, call, mode, sensitivity));
}

Result AntiAlias(const Call& call, Parameters& /*parameters*/) {
    return Single(CallWithArea(QV8AntiAlias, call));
}

Result Mosaic(const Call& call, Parameters& parameters) {
    const int width = static_cast<int>(parameters.Wild(3, 2, 20));
    const int height = parameters.Number(2, -1, 20);
    return Single(CallWithArea(QV8Mosaic, call, width, height));
}

Result Outline(const Call& call, Parameters& parameters) {
    const auto channel = static_cast<DWORD>(parameters.Number(0, 0, 3));
    const auto edgeOperator = static_cast<DWORD>(parameters.Number(2, 0, 3));
    const auto gain = static_cast<DWORD>(parameters.Number(1, 0, 5));
    return Single(CallWithArea(QV8Outline, call, channel, edgeOperator, gain));
}

constexpr unsigned kFilterLayouts = kAccept8Grey | kAccept16 | kAccept24 | kAccept32;

constexpr Export kRows[] = {
    {"QV8RemoveNoise", kFilterLayouts, AreaUse::kAlways, kBadPicture, kBadPicture, RemoveNoise},
    {"QV8AntiAlias", kFilterLayouts, AreaUse::kAlways, kBadPicture, kBadPicture, AntiAlias},
    {"QV8Mosaic", kAcceptAll, AreaUse::kAlways, kBadPicture, kBadPicture, Mosaic},
    {"QV8Outline", kFilterLayouts, AreaUse::kAlways, kBadPicture, kBadPicture, Outline},
};

} // namespace

std::span<const Export> SpecialFilterRows() {
    return kRows;
}

} // namespace test
