// Closes the region that avx2_begin.h opened.
#if defined(__clang__)
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif
