// The parts of the frame that other parts lean on: sizes, runs of a mask, packed indices, memory.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "area/area.h"
#include "pixels/dib.h"
#include "pixels/indices.h"

namespace {

using namespace qv8;

TEST(DibBytes, RowsArePaddedToFourBytes) {
    EXPECT_EQ(8, DibRowBytes(1, 33));
    EXPECT_EQ(4, DibRowBytes(24, 1));
    EXPECT_EQ(4, DibRowBytes(1, 32));
    EXPECT_EQ(1920 * 3, DibRowBytes(24, 1920));
    EXPECT_EQ(40U + 8U * 3U, DibBytes(40, 1, 33, 3));
}

TEST(DibBytes, SizesBeyondTheLimitAreNoSizes) {
    constexpr int kHuge = 0x7FFFFFFF;
    EXPECT_EQ(0x7FFFFFFCU, DibBytes(0, 8, 4, 0x1FFFFFFF));
    EXPECT_EQ(0U, DibBytes(4, 8, 4, 0x1FFFFFFF));
    EXPECT_EQ(0U, DibBytes(40, 32, kHuge, 1));
    EXPECT_EQ(0U, DibBytes(40, 32, kHuge, kHuge));
    EXPECT_EQ(0U, DibBytes(40, 1, 1, kHuge));
    EXPECT_EQ(0U, DibBytes(0x80000000ULL, 1, 1, 1));
    for (const int bad : {0, -1, -0x7FFFFFFF - 1}) {
        EXPECT_EQ(0U, DibBytes(40, 24, bad, 5));
        EXPECT_EQ(0U, DibBytes(40, 24, 5, bad));
    }
}

// Every 12-bit pattern at every width, and long runs over several bytes: runs cover exactly the set bits.
TEST(MaskRuns, CoverExactlyTheSetBits) {
    std::vector<std::vector<BYTE>> masks;
    for (unsigned bits = 0; bits != 4096; ++bits) {
        masks.push_back({static_cast<BYTE>(bits >> 4U), static_cast<BYTE>(bits << 4U)});
    }
    masks.push_back({0xFF, 0xFF, 0xFF, 0xFE, 0, 0, 0, 1, 0xFF, 0x80});
    for (const std::vector<BYTE>& mask : masks) {
        const int bits = static_cast<int>(mask.size()) * 8;
        for (int width = 1; width <= bits; ++width) {
            std::vector<int> seen(static_cast<std::size_t>(bits));
            int begin = 0;
            int end = 0;
            int previousEnd = -1;
            while (NextRun(mask.data(), width, begin, end)) {
                ASSERT_LT(previousEnd, begin) << "runs that touch are one run";
                ASSERT_LT(begin, end);
                for (int i = begin; i != end; ++i) {
                    seen[static_cast<std::size_t>(i)] = 1;
                }
                previousEnd = begin = end;
            }
            for (int i = 0; i != bits; ++i) {
                const bool isSet = (mask[static_cast<std::size_t>(i / 8)] >> (7 - i % 8) & 1) != 0;
                ASSERT_EQ(isSet && i < width ? 1 : 0, seen[static_cast<std::size_t>(i)])
                    << "bit " << i << " of " << width;
            }
        }
    }
}

TEST(Indices, UnpackAndPackMostSignificantFirst) {
    const BYTE row[] = {0xA3, 0x5C, 0x01, 0xF0};
    BYTE indices[32] = {};
    UnpackIndices(1, row, 8, 12, indices);
    const std::vector<BYTE> bits = {0, 1, 0, 1, 1, 1, 0, 0, 0, 0, 0, 0};
    EXPECT_EQ(bits, std::vector<BYTE>(indices, indices + 12));
    UnpackIndices(4, row, 0, 5, indices);
    const std::vector<BYTE> nibbles = {0xA, 3, 5, 0xC, 0};
    EXPECT_EQ(nibbles, std::vector<BYTE>(indices, indices + 5));
    BYTE packed[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    PackIndices(1, bits.data(), 12, packed, 8);
    PackIndices(4, nibbles.data(), 5, packed, 8);
    EXPECT_EQ((std::vector<BYTE>{1, 0x5C, 0, 4, 0xA3, 0x5C, 0x00, 8}), std::vector<BYTE>(packed, packed + 8));
}

#ifndef _WIN32 // on Windows the system's own memory

class MemoryOfSize : public testing::TestWithParam<SIZE_T> {};

TEST_P(MemoryOfSize, BlocksAreZeroLockedAndFreed) {
    const SIZE_T size = GetParam();
    for (int round = 0; round != 3; ++round) { // later rounds get blocks that were used before
        const HGLOBAL block = GlobalAlloc(GHND, size);
        ASSERT_NE(nullptr, block);
        EXPECT_EQ(size, GlobalSize(block));
        auto* const bytes = static_cast<BYTE*>(GlobalLock(block));
        ASSERT_NE(nullptr, bytes);
        EXPECT_NE(static_cast<void*>(bytes), block);
        EXPECT_EQ(bytes, GlobalLock(block));
        EXPECT_EQ(2U, GlobalFlags(block) & 0xFFU);
        EXPECT_EQ(block, GlobalHandle(bytes));
        EXPECT_EQ(nullptr, GlobalHandle(bytes + 1));
        EXPECT_EQ(0, bytes[0]);
        EXPECT_EQ(0, std::memcmp(bytes, bytes + 1, size - 1));
        std::memset(bytes, 0xEE, size);
        EXPECT_NE(0, GlobalUnlock(block));
        EXPECT_EQ(0, GlobalUnlock(block));
        EXPECT_EQ(0, GlobalUnlock(block));
        EXPECT_EQ(nullptr, GlobalFree(block));
        EXPECT_EQ(block, GlobalFree(block));
        EXPECT_EQ(nullptr, GlobalLock(block));
        EXPECT_EQ(0U, GlobalSize(block));
        EXPECT_EQ(nullptr, GlobalHandle(bytes));
    }
}
INSTANTIATE_TEST_SUITE_P(Sizes, MemoryOfSize, testing::Values(1, 40, 4096, 1 << 20, (3 << 20) + 1));

TEST(Memory, RefusesWhatItCannotGive) {
    EXPECT_EQ(nullptr, GlobalAlloc(GHND, 0x80000000U));
    EXPECT_EQ(nullptr, GlobalAlloc(GMEM_FIXED, 10));
    const HGLOBAL empty = GlobalAlloc(GHND, 0);
    EXPECT_NE(nullptr, empty);
    EXPECT_EQ(nullptr, GlobalLock(empty));
    EXPECT_EQ(nullptr, GlobalFree(empty));
    int local = 0;
    for (void* const noHandle : {static_cast<void*>(nullptr), static_cast<void*>(&local)}) {
        EXPECT_EQ(nullptr, GlobalLock(noHandle));
        EXPECT_EQ(0, GlobalUnlock(noHandle));
        EXPECT_EQ(0U, GlobalSize(noHandle));
        EXPECT_EQ(noHandle, GlobalFree(noHandle));
        EXPECT_EQ(0x8000U, GlobalFlags(noHandle));
    }
}

#endif

} // namespace
