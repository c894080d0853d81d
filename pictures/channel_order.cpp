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

Sixteen Load(const BYTE* from) {
    Sixteen bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

void Store(BYTE* to, Sixteen bytes) {
    std::memcpy(to, &bytes, sizeof bytes);
}

// Sixteen pixels of three bytes are three registers, so that each is stored once and where it lies. The bytes that one
// of them takes lie in 18 that follow each other: the register's own and one to each side, or two to one side.
QV8_SHUFFLES void SwapSixteenPixels(const BYTE* from, BYTE* to) {
    const Sixteen left =
        __builtin_shufflevector(Load(from), Load(from + 2), 2, 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14, 13, 12, 31);
    const Sixteen middle = __builtin_shufflevector(Load(from + 15), Load(from + 17), 1, 0, 5, 4, 3, 8, 7, 6, 11, 10, 9,
                                                   14, 13, 12, 31, 30);
    const Sixteen right = __builtin_shufflevector(Load(from + 30), Load(from + 32), 0, 5, 4, 3, 8, 7, 6, 11, 10, 9, 14,
                                                  13, 12, 31, 30, 29);
    Store(to, left);
    Store(to + 16, middle);
    Store(to + 32, right);
}

QV8_SHUFFLES void SwapFourPixels(const BYTE* from, BYTE* to) {
    const Sixteen bytes = Load(from);
    Store(to, __builtin_shufflevector(bytes, bytes, 2, 1, 0, 3, 6, 5, 4, 7, 10, 9, 8, 11, 14, 13, 12, 15));
}

// Exchanges the pixels that fill registers. Returns the bytes that are done.
template <std::size_t kPixelBytes>
QV8_SHUFFLES std::size_t SwapRegisters(const BYTE* from, BYTE* to, std::size_t size) {
    constexpr std::size_t kStep = kPixelBytes == 3 ? 3 * sizeof(Sixteen) : sizeof(Sixteen);
    std::size_t done = 0;
    for (; done + kStep <= size; done += kStep) {
        kPixelBytes == 3 ? SwapSixteenPixels(from + done, to + done) : SwapFourPixels(from + done, to + done);
    }
    return done;
}

template <std::size_t kPixelBytes>
void Swap(const BYTE* from, BYTE* to, std::size_t size) {
    for (std::size_t i = CanShuffle() ? SwapRegisters<kPixelBytes>(from, to, size) : 0; i < size; i += kPixelBytes) {
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
