#include "pictures/channel_order.h"

#include <cstring>

// A shuffle of bytes is one instruction from SSSE3 on, and always elsewhere than on x86.
#if defined(__x86_64__) || defined(__i386__)
#define QV8_SHUFFLES __attribute__((target("ssse3")))
#else
#define QV8_SHUFFLES
#endif

namespace {

using Sixteen = BYTE __attribute__((vector_size(16)));

bool CanShuffle() {
#if defined(__x86_64__) || defined(__i386__)
    return __builtin_cpu_supports("ssse3") != 0;
#else
    return true;
#endif
}

// Exchanges whole pixels, as many as lie in registers that end within the row. Returns the bytes that are done. What is
// next is loaded before the register in front of it is stored: the two share a byte, and a load that takes a byte from
// a store that is still under way has to wait for it.
template <std::size_t kPixelBytes>
QV8_SHUFFLES std::size_t SwapSixteens(const BYTE* from, BYTE* to, std::size_t size) {
    constexpr std::size_t kWhole = sizeof(Sixteen) / kPixelBytes * kPixelBytes;
    std::size_t done = 0;
    Sixteen next{};
    if (size >= sizeof next) {
        std::memcpy(&next, from, sizeof next);
    }
    for (; done + kWhole + sizeof next <= size; done += kWhole) {
        Sixteen bytes = next;
        std::memcpy(&next, from + done + kWhole, sizeof next);
        if constexpr (kPixelBytes == 3) {
            bytes = __builtin_shufflevector(bytes, bytes, 2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, 15);
        } else {
            bytes = __builtin_shufflevector(bytes, bytes, 2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15);
        }
        std::memcpy(to + done, &bytes, sizeof bytes);
    }
    return done;
}

template <std::size_t kPixelBytes>
void Swap(const BYTE* from, BYTE* to, std::size_t size) {
    for (std::size_t i = CanShuffle() ? SwapSixteens<kPixelBytes>(from, to, size) : 0; i < size; i += kPixelBytes) {
        const BYTE first = from[i];
        const BYTE third = from[i + 2];
        to[i] = third;
        to[i + 1] = from[i + 1];
        to[i + 2] = first;
        if constexpr (kPixelBytes == 4) {
            to[i + 3] = from[i + 3];
        }
    }
}

} // namespace

void SwapRedAndBlue(const BYTE* from, BYTE* to, std::size_t width, std::size_t pixelBytes) {
    (pixelBytes == 3 ? Swap<3> : Swap<4>)(from, to, width * pixelBytes);
}
