#include <gtest/gtest.h>

#include <climits>
#include <cstdint>

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

} // namespace
} // namespace test
