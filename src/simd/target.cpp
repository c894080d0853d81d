#include "simd/target.h"

namespace qv8 {
namespace {

Target currentTarget = Target::kBaseline;

#ifdef __i386__
#define QV8_REALIGN __attribute__((force_align_arg_pointer))
#else
#define QV8_REALIGN
#endif

// Runs while the library is loaded, before any call can come in. Asking for "avx2" covers the system's side, saving the
// wide registers, too.
__attribute__((constructor)) QV8_REALIGN void ChooseTarget() {
    __builtin_cpu_init();
    currentTarget = BestTarget();
}

} // namespace

Target BestTarget() {
    return __builtin_cpu_supports("avx2") ? Target::kAvx2 : Target::kBaseline;
}

std::span<const Target> RunnableTargets() {
    static constexpr Target kTargets[] = {Target::kBaseline, Target::kAvx2};
    return std::span(kTargets).first(static_cast<std::size_t>(BestTarget()) + 1);
}

Target CurrentTarget() {
    return currentTarget;
}

void UseTarget(Target target) {
    currentTarget = target == Target::kAvx2 ? BestTarget() : Target::kBaseline;
}

} // namespace qv8
