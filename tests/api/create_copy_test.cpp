// Pictures of one colour, and copies.
#include <algorithm>
#include <string>

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

Block Create(int width, int height, DWORD bits, Colour colour) {
    return Block(QV8CreateImage(width, height, bits, colour.red, colour.green, colour.blue, 1, 0, 0, 0));
}

TEST(CreateImage, FillsEveryPixelWithTheNearestColour) {
    struct Case {
        DWORD bits;
        Colour asked;
        Colour shown;
    };
    const Case kCases[] = {
        {1, {127, 127, 127}, {0, 0, 0}},
        {1, {128, 128, 128}, {255, 255, 255}},
        {1, {255, 129, 0}, {255, 255, 255}},
        {4, {0, 0, 130}, {0, 0, 127}},
        {4, {200, 190, 180}, {192, 192, 192}},
        {4, {64, 0, 0}, {127, 0, 0}},
        {8, {250, 120, 60}, {255, 102, 51}},
        {8, {255, 255, 255}, {255, 255, 255}},
        {16, {255, 255, 255}, {255, 255, 255}},
        {16, {8, 128, 200}, {0, 123, 197}},
        {24, {1, 2, 3}, {1, 2, 3}},
        {32, {250, 120, 60}, {250, 120, 60}},
    };
    for (const Case& c : kCases) {
        for (const int width : {1, 7, 8, 33}) {
            SCOPED_TRACE(std::to_string(c.bits) + " bits, width " + std::to_string(width));
            const Block block = Create(width, 3, c.bits, c.asked);
            ASSERT_NE(block, nullptr);
            EXPECT_EQ(GetErrorStatus(), QV8_STATUS_SUCCESS);
            const Picture picture{ReadBlock(block.get())};
            for (int row = 0; row != 3; ++row) {
                for (int x = 0; x != width; ++x) {
                    ASSERT_EQ(picture.ColourAt(x, row), c.shown);
                }
            }
        }
    }
    const Picture entry{ReadBlock(Create(1, 1, 8, {250, 120, 60}).get())};
    EXPECT_EQ(entry.Index(0, 0), 193U);
    const Bytes white = ReadBlock(Create(1, 1, 16, {255, 255, 255}).get());
    EXPECT_EQ((Bytes{0xFF, 0x7F, 0, 0}), Bytes(white.begin() + 40, white.end()));
}

TEST(CreateImage, DescribesItselfAndLeavesPaddingZero) {
    const std::pair<DWORD, std::size_t> kTables[] = {{1, 2}, {4, 16}, {8, 216}, {16, 0}, {24, 0}, {32, 0}};
    for (const auto& [bits, entries] : kTables) {
        const Block block = Create(5, 2, 0xFFFF0000U | bits, {255, 255, 255});
        const Picture picture{ReadBlock(block.get())};
        const BITMAPINFOHEADER header = picture.Header();
        const std::size_t rowBytes = RowBytesOf(static_cast<int>(bits), 5);
        EXPECT_EQ(header.biSize, 40U);
        EXPECT_TRUE(header.biWidth == 5 && header.biHeight == 2 && header.biPlanes == 1 && header.biBitCount == bits);
        EXPECT_TRUE(header.biCompression == BI_RGB && header.biXPelsPerMeter == 0 && header.biYPelsPerMeter == 0);
        EXPECT_EQ(header.biClrUsed, bits == 8 ? 216U : 0U);
        EXPECT_EQ(header.biClrImportant, 0U);
        EXPECT_EQ(header.biSizeImage, 2 * rowBytes);
        ASSERT_EQ(picture.bytes.size(), 40 + 4 * entries + 2 * rowBytes);
        for (std::size_t row = 0; row != 2; ++row) { // from the first bit behind the fifth pixel
            const BYTE* const bytes = &picture.bytes[picture.PixelOffset() + row * rowBytes];
            for (std::size_t bit = 5 * bits; bit != 8 * rowBytes; ++bit) {
                EXPECT_EQ(bytes[bit / 8] >> (7 - bit % 8) & 1, 0) << bits << " bits, bit " << bit;
            }
        }
        for (int x = 0; bits == 32 && x != 5; ++x) {
            EXPECT_EQ(picture.bytes[picture.PixelAddress(x, 1) + 3], 0);
        }
    }
}

TEST(CreateImage, ClampsSizesAndRefusesWhatItCannotMake) {
    const Picture tiny{ReadBlock(Create(0, -5, 24, {1, 2, 3}).get())};
    EXPECT_TRUE(tiny.Width() == 1 && tiny.Height() == 1);
    for (const DWORD bits : {0U, 2U, 12U, 80U, 0xFFE8U}) {
        EXPECT_EQ(Create(4, 4, bits, {0, 0, 0}), nullptr);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_DEPTH);
    }
    constexpr int kHuge = 0x7FFFFFFF;
    for (const auto& [width, height] : {std::pair{kHuge, kHuge}, {kHuge, 1}, {1, kHuge}, {50000, 50000}}) {
        EXPECT_EQ(Create(width, height, 32, {0, 0, 0}), nullptr);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_MEMORY);
    }
}

TEST(CopyImage, CopiesEveryByteButTheSizeOfTheRows) {
    Random random(60);
    for (const Layout& layout : Layouts()) {
        SCOPED_TRACE(layout.name);
        const Source source(RandomPicture(layout, RandomSide(random), random.Between(1, 20), random));
        const Block copy(QV8CopyImage(source.Handle(), 1, 0, 0, 0));
        ASSERT_NE(copy, nullptr);
        Picture expected = source.Content();
        BITMAPINFOHEADER header = expected.Header();
        header.biSizeImage = static_cast<DWORD>(expected.RowBytes()) * static_cast<DWORD>(expected.Height());
        expected.SetHeader(header);
        EXPECT_TRUE(Holds(copy.get(), expected));
        EXPECT_TRUE(source.Untouched());
    }
}

} // namespace
} // namespace test
