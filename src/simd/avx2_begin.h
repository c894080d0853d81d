// Opens a region whose functions are compiled for AVX2. Kernel files include their kernels a second time inside it,
// after their last other #include, so that no shared template is compiled for a processor that may not be there.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((target("avx2"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2")
#endif
