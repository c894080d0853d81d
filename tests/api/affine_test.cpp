// Straightening the widest picture.
#include <array>
#include <cstring>

#include "api/export_table.h"

namespace test {
namespace {

using Corners = std::array<POINT, 4>;

Block Straighten(HGLOBAL image, const Corners& at) {
    return Block(QV8Affine(image, at[0].x, at[0].y, at[1].x, at[1].y, at[2].x, at[2].y, at[3].x, at[3].y, 1, 0, 0, 0));
}

// Once counted columns beyond the largest number, and never came to an end. Most of the picture is never touched.
TEST(Affine, ComesToTheEndOfTheWidestPicture) {
    constexpr int kWidth = 0x7FFFFFFF;
    const Block widest(GlobalAlloc(GHND, 48 + 2 * RowBytesOf(1, kWidth)));
    if (widest == nullptr) {
        GTEST_SKIP() << "no block of half a GiB";
    }
    BITMAPINFOHEADER header = BlankPicture(1, 1, 2).Header();
    header.biWidth = kWidth;
    std::memcpy(GlobalLock(widest.get()), &header, sizeof header);
    GlobalUnlock(widest.get());
    const Block result =
        Straighten(widest.get(), {{{kWidth - 647, 0}, {kWidth - 642, 1}, {kWidth - 1, 0}, {kWidth - 1, 1}}});
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(Picture{ReadBlock(result.get())}.Width(), 641);
}

} // namespace
} // namespace test
