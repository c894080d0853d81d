#include "api/export_rows.h"

namespace test {
namespace {

struct Size {
    int width, height;
    DWORD smooth;
};

// Larger than the pictures of the generic tests unless random.
Size SizeOf(Parameters& parameters) {
    const int width = parameters.Number(25, 1, 60);
    const int height = parameters.Number(16, 1, 60);
    return {width, height, static_cast<DWORD>(parameters.Flag(1))};
}

Result Resize(const Call& call, Parameters& parameters) {
    const auto [width, height, smooth] = SizeOf(parameters);
    const ImageSet result = QV8Resize(call.Target(), width, height, smooth, call.progressOwner, call.dialog[0],
                                      call.dialog[1], call.dialog[2]);
    return {result.hImage, result.hMask, result.hImage != nullptr};
}

Result ResizeEx(const Call& call, Parameters& parameters) {
    const auto [width, height, smooth] = SizeOf(parameters);
    ImageSet result = {&result, &result}; // to be overwritten on every path
    ImageSet* const stored = parameters.Pointer(&result);
    const BOOL succeeded = QV8ResizeEx(call.Target(), stored, width, height, smooth, call.progressOwner, call.dialog[0],
                                       call.dialog[1], call.dialog[2]);
    if (stored == nullptr) {
        return {nullptr, nullptr, succeeded != 0};
    }
    return {result.hImage, result.hMask, succeeded != 0};
}

constexpr Export kRows[] = {
    {"QV8Resize", kAcceptAll, AreaUse::kMaskAlong, kBadPicture, kBadPicture, Resize},
    {"QV8ResizeEx", kAcceptAll, AreaUse::kMaskAlong, kBadPicture, kBadPicture, ResizeEx},
};

} // namespace

std::span<const Export> ResizeRows() {
    return kRows;
}

} // namespace test
