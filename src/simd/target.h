// The processor that kernels are chosen for, found once while the library loads.
#pragma once

#include <span>

namespace qv8 {

enum class Target { kBaseline, kAvx2 }; // each can do what those before it can

// The best target that this processor and system can run.
Target BestTarget();

// All that can run here, the baseline first. For tests and benchmarks.
std::span<const Target> RunnableTargets();

// The target in use: the best one, unless a test or benchmark has chosen another.
Target CurrentTarget();

// For tests and benchmarks. A target that cannot run here is ignored. Not for use while calls are running.
void UseTarget(Target target);

// The table of kernels for the target in use. Families of kernels keep one const table per target.
template <class Kernels>
const Kernels& PickKernels(const Kernels& baseline, const Kernels& avx2) {
    return CurrentTarget() == Target::kAvx2 ? avx2 : baseline;
}

} // namespace qv8
