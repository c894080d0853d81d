#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

#include "frame/area.h"
#include "frame/parts.h"

namespace test {
namespace {

TEST(Parts, CoverAnyTotalOnce) {
    for (const int total : {0, 1, 1023, 1024, 1025, INT_MAX - 1, INT_MAX}) {
        std::int64_t next = 0;
        qv8::ForEachPart(total, total < 2000 ? 1024 : 1 << 30, [&](int start, int count) {
            EXPECT_EQ(start, next);
            EXPECT_GT(count, 0);
            next += count;
        });
        EXPECT_EQ(next, total);
    }
}

// Bits behind the last pixel are no pixels, and a byte of them may end where no int reaches.
TEST(Runs, EndWithTheRow) {
    const BYTE row[] = {0xFF, 0xFF};
    int begin = 3;
    int end = 0;
    ASSERT_TRUE(qv8::NextRun(row, 11, begin, end));
    EXPECT_EQ(begin, 3);
    EXPECT_EQ(end, 11);

    constexpr int kFirst = INT_MAX / 8 * 8;
    for (const int bits : {0x00, 0xFF, 0xFE}) {
        const BYTE last[] = {static_cast<BYTE>(bits)};
        begin = kFirst;
        const bool found = qv8::NextRun(last - kFirst / 8, INT_MAX, begin, end);
        EXPECT_EQ(found, bits != 0);
        EXPECT_TRUE(!found || (begin == kFirst && end == INT_MAX));
    }
}

} // namespace
} // namespace test
