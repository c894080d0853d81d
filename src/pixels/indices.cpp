#include "pixels/indices.h"

#include <cstdint>
#include <cstring>

namespace qv8 {
namespace {

// The bits of a byte, highest first, as eight indices: every byte of the product holds all bits, and each keeps its
// own.
void UnpackEight(BYTE packed, BYTE* indices) {
    const std::uint64_t bits = packed * 0x0101010101010101ULL & 0x0102040810204080ULL;
    const std::uint64_t bytes = (bits + 0x7F7F7F7F7F7F7F7FULL) >> 7U & 0x0101010101010101ULL;
    std::memcpy(indices, &bytes, sizeof bytes);
}

template <int kBits>
void Unpack(const BYTE* packed, int count, BYTE* indices) {
    constexpr int kPerByte = 8 / kBits;
    constexpr unsigned kMask = (1U << kBits) - 1;
    int i = 0;
    if constexpr (kBits == 1) {
        for (; i + 8 <= count; i += 8) {
            UnpackEight(packed[i / 8], indices + i);
        }
    }
    for (; i < count; ++i) {
        const int shift = 8 - kBits - i % kPerByte * kBits;
        indices[i] = static_cast<BYTE>(static_cast<unsigned>(packed[i / kPerByte]) >> shift & kMask);
    }
}

// Eight indices of one bit each, as the bits of a byte: four go to every second half of a byte, the others between
// them. The product moves each to its place in the highest byte, and no two of its terms meet. 32 bits do for that,
// which any processor multiplies at once.
BYTE PackEight(const BYTE* indices) {
    std::uint32_t halves[2];
    std::memcpy(halves, indices, sizeof halves);
    return static_cast<BYTE>((halves[0] << 4U | halves[1]) * 0x08040201U >> 24U);
}

template <int kBits>
BYTE PackByte(const BYTE* indices, int count) {
    constexpr int kPerByte = 8 / kBits;
    unsigned byte = 0;
    for (int k = 0; k < kPerByte; ++k) {
        byte = byte << kBits | (k < count ? indices[k] : 0U);
    }
    return static_cast<BYTE>(byte);
}

template <int kBits>
void Pack(const BYTE* indices, int count, BYTE* packed) {
    constexpr int kPerByte = 8 / kBits;
    int i = 0;
    for (; i + kPerByte <= count; i += kPerByte) {
        if constexpr (kBits == 1) {
            packed[i / kPerByte] = PackEight(indices + i);
        } else {
            packed[i / kPerByte] = static_cast<BYTE>(indices[i] << 4 | indices[i + 1]);
        }
    }
    if (i < count) {
        packed[i / kPerByte] = PackByte<kBits>(indices + i, count - i);
    }
}

} // namespace

void UnpackIndices(int bitCount, const BYTE* row, int column, int count, BYTE* indices) {
    const BYTE* const packed = row + column / 8 * bitCount;
    switch (bitCount) {
    case 1:
        Unpack<1>(packed, count, indices);
        break;
    case 4:
        Unpack<4>(packed, count, indices);
        break;
    default:
        std::memcpy(indices, packed, static_cast<std::size_t>(count));
        break;
    }
}

const BYTE* UnpackFrom(int bitCount, const BYTE* row, int column, int count, BYTE* indices) {
    const int skipped = column % 8;
    UnpackIndices(bitCount, row, column - skipped, count + skipped, indices);
    return indices + skipped;
}

void PackIndices(int bitCount, const BYTE* indices, int count, BYTE* row, int column) {
    BYTE* const packed = row + column / 8 * bitCount;
    switch (bitCount) {
    case 1:
        Pack<1>(indices, count, packed);
        break;
    case 4:
        Pack<4>(indices, count, packed);
        break;
    default:
        std::memcpy(packed, indices, static_cast<std::size_t>(count));
        break;
    }
}

} // namespace qv8
