// The targets that kernels are compiled for, a block each: first what every processor of the kind can do, then more and
// more, each including what those before it ask for. Nothing else lists them. one_target.inl, which says what becomes
// of a target, finds
//   QV8_TARGET    its name, which the namespace of its kernels shares
//   QV8_FEATURE   what a processor must offer for it, in the compiler's words; the first asks for nothing
//   QV8_LANES     the lanes of its registers
#if defined(__x86_64__) || defined(__i386__)

#define QV8_TARGET baseline
#define QV8_LANES "simd/lanes_sse2.inl"
#include "simd/one_target.inl"

#define QV8_TARGET sse41
#define QV8_FEATURE "sse4.1"
#define QV8_LANES "simd/lanes_sse41.inl"
#include "simd/one_target.inl"

#define QV8_TARGET avx2
#define QV8_FEATURE "avx2"
#define QV8_LANES "simd/lanes_avx2.inl"
#include "simd/one_target.inl"

#else

#define QV8_TARGET baseline
#define QV8_LANES "simd/lanes_portable.inl"
#include "simd/one_target.inl"

#endif
