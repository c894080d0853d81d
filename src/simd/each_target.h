// Compiles a family of kernels for each target. The family's .cpp says what it consists of and includes this last,
// after all other #includes, so that no shared template is compiled for a processor that may not be there:
//
//   #define QV8_KERNELS CurveKernels                     what the table of the kernels is called
//   #define QV8_KERNELS_FILE "tone/curve_kernels.inl"    the kernels, and the table of one target, kKernels, at its end
//   #include "simd/each_target.h"                        defines TheCurveKernels(): the table for the target in use
#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "simd/target.h"

// Functions between the two are compiled for processors with the feature.
#define QV8_PRAGMA(text) _Pragma(#text)
#ifdef __clang__
#define QV8_BEGIN_FEATURE(feature)                                                                                     \
    QV8_PRAGMA(clang attribute push(__attribute__((target(feature))), apply_to = function))
#define QV8_END_FEATURE QV8_PRAGMA(clang attribute pop)
#else
#define QV8_BEGIN_FEATURE(feature) QV8_PRAGMA(GCC push_options) QV8_PRAGMA(GCC target(feature))
#define QV8_END_FEATURE QV8_PRAGMA(GCC pop_options)
#endif

#include "simd/targets.inl"

#define QV8_JOINED(a, b) a##b
#define QV8_ACCESSOR(kernels) QV8_JOINED(The, kernels)
#define QV8_TARGET_ROW(target, isSupported) &target::kKernels,

namespace qv8 {

// Every family includes this once, in its own file.
// NOLINTNEXTLINE(misc-definitions-in-headers)
const QV8_KERNELS& QV8_ACCESSOR(QV8_KERNELS)() {
    static constexpr const QV8_KERNELS* kByTarget[] = {
#include "simd/targets.inl"
    };
    return *kByTarget[static_cast<int>(CurrentTarget())];
}

} // namespace qv8
