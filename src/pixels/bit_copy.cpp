#include "pixels/bit_copy.h"

#include <algorithm>
#include <cstring>

#include "pixels/pixel_kernels.h"

namespace qv8 {
namespace {

// The `count` bits (1..8) from `bit` on, as the first bits of a byte; the rest of it is anything.
unsigned BitsAt(const BYTE* source, std::size_t bit, std::size_t count) {
    const std::size_t shift = bit % 8;
    unsigned bits = static_cast<unsigned>(source[bit / 8]) << shift;
    if (shift + count > 8) {
        bits |= static_cast<unsigned>(source[bit / 8 + 1]) >> (8 - shift);
    }
    return bits & 0xFFU;
}

// Copies bits into one byte, `count` of them from its bit `shift` on.
void CopyIntoByte(const BYTE* source, std::size_t sourceBit, BYTE& byte, std::size_t shift, std::size_t count) {
    const unsigned mask = (0xFF00U >> count & 0xFFU) >> shift;
    byte = static_cast<BYTE>((byte & ~mask) | (BitsAt(source, sourceBit, count) >> shift & mask));
}

} // namespace

void CopyBits(const BYTE* source, std::size_t sourceBit, BYTE* result, std::size_t resultBit, std::size_t count) {
    const std::size_t head = std::min((8 - resultBit % 8) % 8, count);
    if (head != 0) {
        CopyIntoByte(source, sourceBit, result[resultBit / 8], resultBit % 8, head);
    }
    const std::size_t bytes = (count - head) / 8;
    const std::size_t from = sourceBit + head;
    const std::size_t to = resultBit + head;
    if (bytes != 0) {
        if (from % 8 == 0) {
            std::memcpy(result + to / 8, source + from / 8, bytes);
        } else {
            ThePixelKernels().shiftBits(source + from / 8, static_cast<int>(from % 8), result + to / 8, bytes);
        }
    }
    const std::size_t tail = (count - head) % 8;
    if (tail != 0) {
        CopyIntoByte(source, from + 8 * bytes, result[(to + 8 * bytes) / 8], (to + 8 * bytes) % 8, tail);
    }
}

} // namespace qv8
