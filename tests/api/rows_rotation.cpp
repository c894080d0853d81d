#include "api/export_rows.h"

namespace test {
namespace {

// All eight parameters, in the order of both forms.
template <class Rotate>
auto WithParameters(const Call& call, Parameters& parameters, Rotate rotate) {
    static constexpr LONG kAngles[] = {3000, 0, 9000, -9000, 18000, -18000, 27000, -27000};
    LONG angle = parameters.OneOf(kAngles);
    angle = parameters.Flag(0) ? parameters.Wild(3000, -36100, 36100) : angle;
    const BOOL mirror = parameters.Flag(1);
    const BOOL flip = parameters.Flag(1);
    const auto smooth = static_cast<DWORD>(parameters.Flag(1));
    const auto red = static_cast<DWORD>(parameters.Number(0x1FF, -1000, 1000));
    const auto green = static_cast<DWORD>(parameters.Number(128, 0, 255));
    const auto blue = static_cast<DWORD>(parameters.Number(30, 0, 255));
    const BOOL keepSize = parameters.Flag(0);
    return rotate(angle, mirror, flip, smooth, red, green, blue, keepSize, call.progressOwner, call.dialog[0],
                  call.dialog[1], call.dialog[2]);
}

Result Rotation(const Call& call, Parameters& parameters) {
    const ImageSet result =
        WithParameters(call, parameters, [&](auto... arguments) { return QV8Rotation(call.Target(), arguments...); });
    return {result.hImage, result.hMask, result.hImage != nullptr};
}

Result RotationEx(const Call& call, Parameters& parameters) {
    int untouched = 0;
    ImageSet result = {&untouched, &untouched}; // to be overwritten whatever happens
    ImageSet* const stored = parameters.Pointer(&result);
    const BOOL succeeded = WithParameters(
        call, parameters, [&](auto... arguments) { return QV8RotationEx(call.Target(), stored, arguments...); });
    if (stored == nullptr) {
        return {nullptr, nullptr, succeeded != 0};
    }
    EXPECT_EQ(succeeded, result.hImage != nullptr ? 1 : 0);
    return {result.hImage, result.hMask, succeeded != 0};
}

constexpr Export kRows[] = {
    {"QV8Rotation", kAcceptAll, AreaUse::kMaskAlong, kBadPicture, kBadPicture, Rotation},
    {"QV8RotationEx", kAcceptAll, AreaUse::kMaskAlong, kBadPicture, kBadPicture, RotationEx},
};

} // namespace

std::span<const Export> RotationRows() {
    return kRows;
}

} // namespace test
