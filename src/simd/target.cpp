#include "simd/target.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "qv8platform.h"

namespace qv8 {
namespace {

#define QV8_NAME(target) #target
#define QV8_TARGET_ROW(target, isSupported) QV8_NAME(target),
constexpr const char* kNames[] = {
#include "simd/targets.inl"
};
#undef QV8_TARGET_ROW

constexpr auto kTargets = [] {
    std::array<Target, std::size(kNames)> targets = {};
    for (std::size_t i = 0; i != targets.size(); ++i) {
        targets[i] = static_cast<Target>(i);
    }
    return targets;
}();

Target currentTarget = Target::kBaseline;

// Runs while the library is loaded, before any call can come in.
__attribute__((constructor)) QV8_REALIGN void ChooseTarget() {
#if defined(__x86_64__) || defined(__i386__)
    __builtin_cpu_init();
#endif
    currentTarget = BestTarget();
}

} // namespace

// Asking for a feature covers the system's side, saving the wide registers, too.
Target BestTarget() {
#define QV8_TARGET_ROW(target, isSupported) isSupported,
    const bool supported[] = {
#include "simd/targets.inl"
    };
#undef QV8_TARGET_ROW
    return static_cast<Target>(std::find(std::begin(supported), std::end(supported), false) - supported - 1);
}

std::span<const Target> RunnableTargets() {
    return std::span(kTargets).first(static_cast<std::size_t>(BestTarget()) + 1);
}

Target CurrentTarget() {
    return currentTarget;
}

void UseTarget(Target target) {
    currentTarget = std::min(target, BestTarget());
}

const char* NameOf(Target target) {
    return kNames[static_cast<int>(target)];
}

} // namespace qv8
