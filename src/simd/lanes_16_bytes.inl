// Lanes of 16 bytes on every target, for what works on one pixel at a time however wide the registers are. Included by
// kernels inside a namespace of their own, beside the lanes of the target.
#if defined(__x86_64__) || defined(__i386__)
#ifdef QV8_FEATURE // all targets that ask for one have what SSE4.1 has
#include "simd/lanes_sse41.inl"
#else
#include "simd/lanes_sse2.inl"
#endif
#else
#include "simd/lanes_portable.inl"
#endif
