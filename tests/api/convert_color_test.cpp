// Conversions that need no reduction of colours, against the rules written out pixel by pixel.
#include <algorithm>
#include <string>

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

constexpr int kGrey = QV8_DEPTH_GREY;

HGLOBAL Convert(HGLOBAL image, DWORD depth) {
    return QV8ConvertColor(image, depth, 0, 0, 128, 1, 0, 0, 0);
}

bool IsDirect(int from, int to) {
    const int bits = to == kGrey ? 8 : to;
    return from <= bits ? from != to : from >= 16 && to >= 16 && to != kGrey;
}

BYTE GreyOf(Colour colour) {
    const float red = static_cast<float>(colour.red) * 0.299F;
    const float green = static_cast<float>(colour.green) * 0.587F;
    const float blue = static_cast<float>(colour.blue) * 0.114F;
    return static_cast<BYTE>(double{red} + double{green} + double{blue});
}

BITMAPINFOHEADER ConvertedHeader(const Picture& source, int depth) {
    BITMAPINFOHEADER header = source.Header();
    const bool keepsTable = depth == 4 || depth == 8;
    header.biClrUsed = keepsTable ? static_cast<DWORD>(source.ColourCount()) : 0;
    header.biBitCount = static_cast<WORD>(depth == kGrey ? 8 : depth);
    header.biCompression = BI_RGB;
    header.biClrImportant = 0;
    header.biSizeImage =
        static_cast<DWORD>(RowBytesOf(header.biBitCount, header.biWidth)) * static_cast<DWORD>(header.biHeight);
    return header;
}

void ConvertTable(const Picture& source, int depth, Picture& result) {
    for (std::size_t i = 0; i != result.ColourCount(); ++i) {
        if (depth == kGrey) {
            std::fill_n(result.TableEntry(i), 3, static_cast<BYTE>(i));
        } else {
            std::copy_n(source.TableEntry(i), 3, result.TableEntry(i));
        }
    }
}

// Whatever is not stored here is 0: padding, reserved bytes, the fourth bytes of pixels.
Picture Converted(const Picture& source, int depth) {
    Picture result{Bytes(40)};
    result.SetHeader(ConvertedHeader(source, depth));
    result.bytes.resize(result.PixelOffset() + result.Header().biSizeImage);
    ConvertTable(source, depth, result);
    for (int row = 0; row != source.Height(); ++row) {
        for (int x = 0; x != source.Width(); ++x) {
            if (depth == kGrey) {
                result.SetIndex(x, row, GreyOf(source.ColourAt(x, row)));
            } else if (depth <= 8) {
                result.SetIndex(x, row, source.Index(x, row));
            } else {
                result.SetColour(x, row, source.ColourAt(x, row));
            }
        }
    }
    return result;
}

void Check(const Source& source, int depth) {
    const Block result(Convert(source.Handle(), static_cast<DWORD>(depth)));
    ASSERT_NE(result, nullptr) << GetErrorStatus();
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_SUCCESS);
    EXPECT_TRUE(Holds(result.get(), Converted(source.Content(), depth)));
    EXPECT_TRUE(source.Untouched());
}

TEST(ConvertColor, FollowsItsRuleBetweenAllDirectPairs) {
    Random random(30);
    for (const Layout& layout : Layouts()) {
        for (const int depth : {4, 8, kGrey, 16, 24, 32}) {
            if (!IsDirect(layout.bits, depth)) {
                continue;
            }
            for (int i = 0; i != 25; ++i) {
                SCOPED_TRACE(std::string(layout.name) + " to " + std::to_string(depth) + ", case " + std::to_string(i));
                const int width = i == 0 ? 1031 : RandomSide(random);
                const Source source(RandomPicture(layout, width, random.Between(1, 30), random));
                Check(source, depth);
                ASSERT_FALSE(HasFailure());
            }
        }
    }
}

// Every 16-bit word, and every level of each channel.
TEST(ConvertColor, FollowsItsRuleForEveryValue) {
    Random random(31);
    for (const char* const name : {"16", "16-555", "16-565"}) {
        Picture words = RandomPicture(LayoutNamed(name), 256, 256, random);
        for (unsigned word = 0; word != 0x10000; ++word) {
            BYTE* const pixel = &words.bytes[words.PixelOffset() + 2 * std::size_t{word}];
            pixel[0] = static_cast<BYTE>(word);
            pixel[1] = static_cast<BYTE>(word >> 8U);
        }
        const Source source(words);
        Check(source, 24);
        Check(source, 32);
    }
    Picture levels = BlankPicture(24, 256, 3);
    Picture grey = RandomPicture(LayoutNamed("8"), 256, 1, random);
    for (int i = 0; i != 256; ++i) {
        const auto level = static_cast<BYTE>(i);
        levels.SetColour(i, 0, {level, 0, 255});
        levels.SetColour(i, 1, {255, level, 0});
        levels.SetColour(i, 2, {0, 255, level});
        grey.SetIndex(i, 0, level);
        std::fill_n(grey.TableEntry(level), 3, level);
    }
    Check(Source(levels), 16);
    Check(Source(levels), 32);
    Check(Source(grey), kGrey);
}

TEST(ConvertColor, KeepsShortTables) {
    Random random(32);
    const Source source(RandomPicture(LayoutNamed("4-short"), 7, 2, random));
    const Block result(Convert(source.Handle(), 8));
    const Picture picture{ReadBlock(result.get())};
    EXPECT_EQ(picture.Header().biClrUsed, 5U);
    EXPECT_EQ(picture.bytes.size(), 40U + 5 * 4 + 2 * 8);
    EXPECT_EQ(picture.Index(6, 1), source.Content().Index(6, 1));
}

TEST(ConvertColor, KnownValues) {
    Random random(33);
    Picture source = RandomPicture(LayoutNamed("16-565"), 2, 1, random);
    const BYTE words[] = {0xE0, 0x07, 0x00, 0x04}; // green 63, green 32
    std::copy_n(words, 4, &source.bytes[source.PixelOffset()]);
    const Block wide(Convert(Source(source).Handle(), 24));
    const Picture colours{ReadBlock(wide.get())};
    EXPECT_EQ(colours.ColourAt(0, 0), (Colour{0, 255, 0}));
    EXPECT_EQ(colours.ColourAt(1, 0), (Colour{0, 129, 0}));

    Picture pixel = BlankPicture(24, 1, 1);
    pixel.SetColour(0, 0, {8, 255, 9});
    const Block narrow(Convert(Source(pixel).Handle(), 16));
    const Bytes bytes = ReadBlock(narrow.get());
    ASSERT_EQ(bytes.size(), 44U);
    EXPECT_EQ(bytes[40] | bytes[41] << 8, 1 << 10 | 31 << 5);
}

TEST(ConvertColor, RefusesTheSameDepthAndUnknownOnes) {
    Random random(34);
    for (const Layout& layout : Layouts()) {
        const Source source(RandomPicture(layout, 9, 5, random));
        for (const DWORD depth : {DWORD{layout.bits}, DWORD{0}, DWORD{2}, DWORD{12}, DWORD{33}, DWORD{48}, DWORD{79},
                                  DWORD{81}, DWORD{0xFFFF}, DWORD{0x8018}}) {
            SetErrorStatus(kUntouched);
            EXPECT_EQ(Convert(source.Handle(), depth), nullptr) << layout.name << " to " << depth;
            EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
        }
        // Of the depth only 16 bits count, of the source's only what it is.
        const Block result(Convert(source.Handle(), 0xABCD0000U + (layout.bits == 24 ? 32U : 24U)));
        EXPECT_NE(result, nullptr);
    }
}

TEST(ConvertColor, LeavesTheStatusAloneForAZeroHandle) {
    SetErrorStatus(kUntouched);
    EXPECT_EQ(Convert(nullptr, 24), nullptr);
    EXPECT_EQ(Convert(nullptr, 12), nullptr);
    EXPECT_EQ(GetErrorStatus(), kUntouched);
}

TEST(ConvertColor, ReportsEachRow) {
    Random random(35);
    for (const char* const name : {"1", "8", "16", "32"}) {
        const Source source(RandomPicture(LayoutNamed(name), 9, 7, random));
        for (const int depth : {kGrey, 16, 24, 32}) {
            if (!IsDirect(source.Content().Bits(), depth)) {
                continue;
            }
            HGLOBAL result = nullptr;
            const hooks::Report report =
                hooks::Watch({}, [&] { result = Convert(source.Handle(), static_cast<DWORD>(depth)); });
            const Block block(result);
            ASSERT_EQ(report.progress.size(), 7U);
            for (int row = 0; row != 7; ++row) {
                const hooks::ProgressCall& step = report.progress[static_cast<std::size_t>(row)];
                EXPECT_TRUE(step.current == row && step.last == 6 && step.fromPercent == 0 && step.toPercent == 100);
            }
        }
    }
}

} // namespace
} // namespace test
