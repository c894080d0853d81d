// What becomes of one target of targets.inl: a row, where the file that includes the list has defined
// QV8_TARGET_ROW(name, isSupported); else a copy of the kernels that each_target.h is about.
#ifdef QV8_TARGET_ROW

#ifdef QV8_FEATURE
QV8_TARGET_ROW(QV8_TARGET, __builtin_cpu_supports(QV8_FEATURE) != 0)
#else
QV8_TARGET_ROW(QV8_TARGET, true)
#endif

#else

#ifdef QV8_FEATURE
QV8_BEGIN_FEATURE(QV8_FEATURE)
#endif
namespace qv8 {
namespace {
namespace QV8_TARGET {
#include QV8_LANES
#include QV8_KERNELS_FILE
} // namespace QV8_TARGET
} // namespace
} // namespace qv8
#ifdef QV8_FEATURE
QV8_END_FEATURE
#endif

#endif
#undef QV8_TARGET
#undef QV8_FEATURE
#undef QV8_LANES
