// The processor that kernels are chosen for, found once while the library loads.
#pragma once

#include <span>

namespace qv8 {

// A place in the list of targets.inl.
enum class Target : int { kBaseline };

// The best target that this processor and system can run; they can run all before it, too.
Target BestTarget();

// All that can run here, the baseline first. For tests and benchmarks.
std::span<const Target> RunnableTargets();

// The target in use: the best one, unless a test or benchmark has chosen another.
Target CurrentTarget();

// For tests and benchmarks. Of a target that cannot run here the best one that can takes the place. Not for use while
// calls are running.
void UseTarget(Target target);

// What the target is called, such as "avx2".
const char* NameOf(Target target);

} // namespace qv8
