#include "api/export_rows.h"

namespace test {
namespace {

// The pair as the caller's own, with what it says of the call.
Result Pair(const ImageSet& set, bool succeeded) {
    EXPECT_TRUE(succeeded ? set.hImage != nullptr && set.hMask != nullptr
                          : set.hImage == nullptr && set.hMask == nullptr);
    return {set.hImage, set.hMask, succeeded};
}

template <class Function, class... OwnParameters>
Result CallWithShape(Function* function, const Call& call, OwnParameters... own) {
    const Area& area = call.area;
    const ImageSet set = function(call.target.hImage, area.type, area.Points(), area.Count(), area.Rect(), area.inside,
                                  own..., call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]);
    return Pair(set, set.hImage != nullptr);
}

// The same through a pointer to what must be overwritten in any case.
template <class Function, class... OwnParameters>
Result CallExWithShape(Function* function, const Call& call, Parameters& parameters, OwnParameters... own) {
    const Area& area = call.area;
    ImageSet set = {call.target.hImage, &set};
    ImageSet* const stored = parameters.Pointer(&set);
    const BOOL succeeded =
        function(call.target.hImage, stored, area.type, area.Points(), area.Count(), area.Rect(), area.inside, own...,
                 call.progressOwner, call.dialog[0], call.dialog[1], call.dialog[2]);
    return stored != nullptr ? Pair(set, succeeded != FALSE) : Result{nullptr, nullptr, succeeded != FALSE};
}

DWORD Level(Parameters& parameters, int typical) {
    return static_cast<DWORD>(parameters.Number(typical, 0, 300)); // the low byte counts
}

Result SelectImage(const Call& call, Parameters& parameters) {
    const DWORD red = Level(parameters, 250);
    const DWORD green = Level(parameters, 120);
    return CallWithShape(QV8SelectImage, call, red, green, Level(parameters, 60));
}

Result SelectImageEx(const Call& call, Parameters& parameters) {
    const DWORD red = Level(parameters, 250);
    const DWORD green = Level(parameters, 120);
    return CallExWithShape(QV8SelectImageEx, call, parameters, red, green, Level(parameters, 60));
}

struct KeyParameters {
    DWORD red, green, blue, mode, tolerance;

    explicit KeyParameters(Parameters& parameters)
        : red(Level(parameters, 90)), green(Level(parameters, 120)), blue(Level(parameters, 150)),
          mode(static_cast<DWORD>(parameters.Number(0, 0, 2))), tolerance(Level(parameters, 60)) {}
};

Result AutoSelectImage(const Call& call, Parameters& parameters) {
    const KeyParameters key(parameters);
    return CallWithShape(QV8AutoSelectImage, call, key.red, key.green, key.blue, key.mode, key.tolerance);
}

Result AutoSelectImageEx(const Call& call, Parameters& parameters) {
    const KeyParameters key(parameters);
    return CallExWithShape(QV8AutoSelectImageEx, call, parameters, key.red, key.green, key.blue, key.mode,
                           key.tolerance);
}

constexpr Export kRows[] = {
    {"QV8SelectImage", kAcceptAll, AreaUse::kDrawnShapes, kBadPicture, kBadPicture, SelectImage},
    {"QV8SelectImageEx", kAcceptAll, AreaUse::kDrawnShapes, kBadPicture, kBadPicture, SelectImageEx},
    {"QV8AutoSelectImage", kAcceptAll, AreaUse::kShapes, kBadPicture, kBadPicture, AutoSelectImage},
    {"QV8AutoSelectImageEx", kAcceptAll, AreaUse::kShapes, kBadPicture, kBadPicture, AutoSelectImageEx},
};

} // namespace

std::span<const Export> SelectRows() {
    return kRows;
}

} // namespace test
