// Straightening: corners in any order, a turned rectangle, and the widest picture.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "api/export_table.h"

namespace test {
namespace {

using Corners = std::array<POINT, 4>;

Block Straighten(HGLOBAL image, const Corners& at) {
    return Block(QV8Affine(image, at[0].x, at[0].y, at[1].x, at[1].y, at[2].x, at[2].y, at[3].x, at[3].y, 1, 0, 0, 0));
}

TEST(Affine, TakesItsCornersInAnyOrder) {
    Random random(87);
    const Source source(RandomPicture(LayoutNamed("24"), 16, 18, random));
    const Corners slanted = {{{3, 14}, {1, 2}, {13, 0}, {15, 17}}};
    const Bytes expected = ReadBlock(Straighten(source.Handle(), slanted).get());
    std::array<std::size_t, 4> order = {0, 1, 2, 3};
    do {
        const Corners corners = {{slanted[order[0]], slanted[order[1]], slanted[order[2]], slanted[order[3]]}};
        EXPECT_EQ(ReadBlock(Straighten(source.Handle(), corners).get()), expected);
    } while (std::next_permutation(order.begin(), order.end()));
}

// A rectangle that is turned by 20 degrees and coloured by its own coordinates comes out with those running along its
// sides.
TEST(Affine, StraightensATurnedRectangle) {
    const double angle = 20 * 3.14159265358979 / 180;
    const double width = 150, height = 110;
    Picture picture = BlankPicture(24, 220, 220);
    const auto cornerAt = [&](double across, double down) {
        return POINT{static_cast<LONG>(std::lround(110 + across * std::cos(angle) + down * std::sin(angle))),
                     static_cast<LONG>(std::lround(110 - across * std::sin(angle) + down * std::cos(angle)))};
    };
    for (int y = 0; y != 220; ++y) {
        for (int x = 0; x != 220; ++x) {
            const double across = (x - 110) * std::cos(angle) - (y - 110) * std::sin(angle);
            const double down = (x - 110) * std::sin(angle) + (y - 110) * std::cos(angle);
            const auto level = [](double share) { return static_cast<BYTE>(std::clamp(share, 0.0, 1.0) * 200 + 20); };
            picture.SetColour(x, 219 - y, {level(across / width + 0.5), level(down / height + 0.5), 0});
        }
    }
    const Source source(picture);
    const Block block =
        Straighten(source.Handle(), {{cornerAt(-width / 2, -height / 2), cornerAt(width / 2, -height / 2),
                                      cornerAt(width / 2, height / 2), cornerAt(-width / 2, height / 2)}});
    const Picture result{ReadBlock(block.get())};
    // What is left between the edges: the sides lean by the sine of the angle.
    EXPECT_NEAR(result.Width(), width * std::cos(angle) - height * std::sin(angle), 2);
    EXPECT_NEAR(result.Height(), height * std::cos(angle) - width * std::sin(angle), 2);
    for (int row = 0; row != result.Height(); ++row) {
        for (int x = 0; x != result.Width(); ++x) {
            const Colour colour = result.ColourAt(x, row);
            EXPECT_NEAR(colour.blue, 20 + 200.0 * x / result.Width(), 8) << x << " " << row;
            EXPECT_NEAR(colour.green, 20 + 200.0 * (result.Height() - 1 - row) / result.Height(), 12)
                << x << " " << row;
        }
    }
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
