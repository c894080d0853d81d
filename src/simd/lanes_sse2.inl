// The lanes of an x86 processor with SSE2.

#include "simd/lanes_x86.inl"

constexpr bool kHasByteShuffle = false; // ShuffleBytes is there, but other ways are faster

#include "simd/shuffle_bytes.inl"
