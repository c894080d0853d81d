// Sizes of pictures, and memory.
#include <gtest/gtest.h>

#include <cstring>

#include "pixels/dib.h"

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
