// Marks hidden in the luminance: what is refused, and where texts are.
#include <algorithm>
#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

struct Side {
    int left, top, right, bottom;
};

Block Set(HGLOBAL image, HGLOBAL pattern, int strength, const Side& side, const char* text = nullptr,
          const char* face = nullptr) {
    return Block(QV8SetSecretImage(image, pattern, text, face, 12, 0, 0, 0, 0, 0, 0, strength, side.left, side.top,
                                   side.right, side.bottom, 1, 0, 0, 0));
}

Block Check(HGLOBAL unmarked, HGLOBAL marked, int threshold) {
    return Block(QV8CheckSecretImage(unmarked, marked, threshold, 1, 0, 0, 0));
}

TEST(SecretImage, RefusesWhatItCannotUse) {
    const auto block = [](int bits, int width, int height) {
        return MakeBlock(BlankPicture(bits, width, height).bytes);
    };
    const Block image = block(24, 9, 7);
    const Block small = block(1, 3, 3);
    const Block colours = block(4, 3, 3);
    const Block wider = block(24, 10, 7);
    const Block higher = block(24, 9, 8);
    const std::string longest(128, 'i');
    const std::string name(32, 'n');
    // Each status is read before the next call.
    std::vector<std::pair<int, int>> statuses;
    const auto note = [&statuses](const Block& result, int expected) {
        EXPECT_EQ(result != nullptr, expected == QV8_STATUS_SUCCESS);
        statuses.emplace_back(GetErrorStatus(), expected);
    };
    const Side whole = {0, 0, 8, 6};
    note(Set(image.get(), colours.get(), 3, whole), QV8_STATUS_PICTURE);
    note(Set(image.get(), image.get(), 3, whole), QV8_STATUS_PICTURE);
    note(Set(image.get(), nullptr, 3, whole, nullptr), QV8_STATUS_PARAMETER);
    note(Set(image.get(), nullptr, 3, whole, (longest + "i").c_str()), QV8_STATUS_PARAMETER);
    note(Set(image.get(), nullptr, 3, whole, "i", (name + "n").c_str()), QV8_STATUS_PARAMETER);
    note(Set(image.get(), nullptr, 3, whole, longest.c_str(), name.c_str()), QV8_STATUS_SUCCESS);
    note(Set(image.get(), nullptr, 3, whole, "", nullptr), QV8_STATUS_SUCCESS);
    note(Set(image.get(), small.get(), 3, whole, (longest + "i").c_str()), QV8_STATUS_SUCCESS);
    note(Set(image.get(), nullptr, 3, {INT_MAX, INT_MIN, INT_MIN, INT_MAX}, "i"), QV8_STATUS_SUCCESS);
    note(Check(image.get(), nullptr, 1), QV8_STATUS_PICTURE);
    note(Check(nullptr, image.get(), 1), QV8_STATUS_PICTURE);
    note(Check(image.get(), small.get(), 1), QV8_STATUS_PICTURE);
    note(Check(image.get(), wider.get(), 1), QV8_STATUS_PICTURE);
    note(Check(image.get(), higher.get(), 1), QV8_STATUS_PICTURE);
    for (std::size_t i = 0; i != statuses.size(); ++i) {
        EXPECT_EQ(statuses[i].first, statuses[i].second) << "case " << i;
    }
}

// --- Texts -----------------------------------------------------------------------------------------------------------

// Which pixels of a grey picture a text marks, the top row first.
struct Marks {
    int width, height;
    std::vector<bool> bits;

    bool At(int x, int y) const {
        return x >= 0 && x < width && y >= 0 && y < height && bits[static_cast<std::size_t>(y * width + x)];
    }
    int Count() const {
        return static_cast<int>(std::count(bits.begin(), bits.end(), true));
    }
    Side Bounds() const { // right and bottom excluded
        Side side = {width, height, 0, 0};
        for (int y = 0; y != height; ++y) {
            for (int x = 0; x != width; ++x) {
                if (At(x, y)) {
                    side = {std::min(side.left, x), std::min(side.top, y), std::max(side.right, x + 1), y + 1};
                }
            }
        }
        return side;
    }
    bool operator==(const Marks&) const = default;
};

// The same marks once more, moved by (dx, dy).
Marks Twice(const Marks& marks, int dx, int dy) {
    Marks both = marks;
    for (int y = 0; y != marks.height; ++y) {
        for (int x = 0; x != marks.width; ++x) {
            if (marks.At(x - dx, y - dy)) {
                both.bits[static_cast<std::size_t>(y * marks.width + x)] = true;
            }
        }
    }
    return both;
}

struct Style {
    DWORD bold, italic, underline, strikeOut, direction, angle;
};

constexpr int kSide = 120;

Marks Draw(const char* text, const Style& style, Side side = {0, 0, kSide - 1, kSide - 1}) {
    Picture grey = BlankPicture(24, kSide, kSide);
    std::fill(grey.bytes.begin() + 40, grey.bytes.end(), static_cast<BYTE>(100));
    const Source image(grey);
    const Block marked(QV8SetSecretImage(image.Handle(), nullptr, text, "Arial", 18, style.bold, style.italic,
                                         style.underline, style.strikeOut, style.direction, style.angle, 40, side.left,
                                         side.top, side.right, side.bottom, 1, 0, 0, 0));
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_SUCCESS);
    const Block found = Check(image.Handle(), marked.get(), 30);
    Marks marks = {kSide, kSide, {}};
    const Picture picture = {ReadBlock(found.get())};
    for (int y = 0; y != kSide; ++y) {
        for (int x = 0; x != kSide; ++x) {
            marks.bits.push_back(picture.Index(x, kSide - 1 - y) != 0);
        }
    }
    return marks;
}

// The distance of lines: how far the second mark of "I" is below the first.
int LineHeight(const Marks& one, const Marks& two) {
    return two.Bounds().bottom - one.Bounds().bottom;
}

TEST(SetSecretImage, SetsLinesAndColumns) {
    const Marks one = Draw("I", {});
    ASSERT_GT(one.Count(), 10);
    const Marks lines = Draw("I\nI", {});
    const int height = LineHeight(one, lines);
    EXPECT_TRUE(height >= 24 && height <= 40) << height;
    EXPECT_EQ(lines, Twice(one, 0, height));
    EXPECT_EQ(Draw("\n\nI", {}).Bounds().bottom, one.Bounds().bottom + 2 * height);
    EXPECT_EQ(Draw("II", {0, 0, 0, 0, 2, 0}), lines) << "characters below one another";
    const Marks columns = Draw("I\nI", {0, 0, 0, 0, 255, 0});
    EXPECT_EQ(columns, Twice(one, height, 0)) << "columns from right to left begin in the corner with the last";
    EXPECT_GT(Draw("I\nII", {0, 0, 0, 0, 2, 0}).Count(), 2 * one.Count());
    EXPECT_FALSE(Draw("I\nII", {0, 0, 0, 0, 2, 0}).At(one.Bounds().left + height, one.Bounds().top + height + 3));
    EXPECT_EQ(Draw("I", {0, 0, 0, 0, 0x101, 0}), one) << "low byte";
}

TEST(SetSecretImage, BeginsInTheCornerOfItsAngle) {
    const Side side = {10, 20, 99, 109};
    const Side upright = Draw("IIL", {}, side).Bounds();
    const int along[] = {upright.left - 10, upright.right - 10}; // from the corner, as one reads
    const int down[] = {upright.top - 20, upright.bottom - 20};
    const auto expect = [](const Side& found, const Side& expected, int angle) {
        const auto isClose = [](int a, int b) { return a - b >= -2 && a - b <= 2; }; // shapes may be rounded otherwise
        EXPECT_TRUE(isClose(found.left, expected.left) && isClose(found.top, expected.top) &&
                    isClose(found.right, expected.right) && isClose(found.bottom, expected.bottom))
            << angle << ": " << found.left << ' ' << found.top << ' ' << found.right << ' ' << found.bottom;
    };
    for (const DWORD highBits : {0U, 0x50000U}) {
        expect(Draw("IIL", {0, 0, 0, 0, 0, highBits + 90}, side).Bounds(),
               {10 + down[0], 110 - along[1], 10 + down[1], 110 - along[0]}, 90);
        expect(Draw("IIL", {0, 0, 0, 0, 0, highBits + 180}, side).Bounds(),
               {100 - along[1], 110 - down[1], 100 - along[0], 110 - down[0]}, 180);
        expect(Draw("IIL", {0, 0, 0, 0, 0, highBits + 270}, side).Bounds(),
               {100 - down[1], 20 + along[0], 100 - down[0], 20 + along[1]}, 270);
    }
    EXPECT_EQ(Draw("IIL", {0, 0, 0, 0, 0, 45}, side), Draw("IIL", {}, side));
    EXPECT_EQ(Draw("IIL", {}, {99, 109, 10, 20}), Draw("IIL", {}, side));
}

TEST(SetSecretImage, CutsTextAtItsRectangle) {
    const Side side = {30, 40, 44, 49};
    const Marks cut = Draw("WWW\nWWW", {}, side);
    const Marks whole = Draw("WWW\nWWW", {}, {30, 40, kSide - 1, kSide - 1});
    for (int y = 0; y != kSide; ++y) {
        for (int x = 0; x != kSide; ++x) {
            const bool inside = x >= 30 && x <= 44 && y >= 40 && y <= 49;
            ASSERT_EQ(cut.At(x, y), inside && whole.At(x, y)) << x << ' ' << y;
        }
    }
    EXPECT_EQ(Draw("I", {}, {-50, -50, 500, 500}), Draw("I", {}));
}

TEST(SetSecretImage, TakesItsStyle) {
    const Marks plain = Draw("Ho", {});
    const auto longestRow = [](const Marks& marks) {
        int longest = 0;
        for (int y = 0; y != kSide; ++y) {
            int run = 0;
            for (int x = 0; x != kSide; ++x) {
                run = marks.At(x, y) ? run + 1 : 0;
                longest = std::max(longest, run);
            }
        }
        return longest;
    };
    EXPECT_GT(Draw("Ho", {9, 0, 0, 0, 0, 0}).Count(), plain.Count());
    EXPECT_NE(Draw("Ho", {0, 1, 0, 0, 0, 0}), plain);
    EXPECT_EQ(Draw("Ho", {0x100, 0x100, 0x100, 0x100, 0x100, 0}), plain) << "low bytes";
    const Marks under = Draw("Ho", {0, 0, 1, 0, 0, 0});
    const Marks struck = Draw("Ho", {0, 0, 0, 1, 0, 0});
    const int width = plain.Bounds().right - plain.Bounds().left;
    EXPECT_TRUE(longestRow(plain) < width && longestRow(under) >= width && longestRow(struck) >= width);
    EXPECT_GT(under.Bounds().bottom, plain.Bounds().bottom);
    EXPECT_EQ(struck.Bounds().bottom, plain.Bounds().bottom);
    EXPECT_EQ(Draw("Ho\n", {0, 0, 1, 1, 0, 0}), Draw("Ho\n", {})) << "of a single line only";
    EXPECT_EQ(Draw("H", {0, 0, 1, 1, 2, 0}), Draw("H", {0, 0, 0, 0, 2, 0})) << "of a horizontal line only";
    // The bar goes through the letters between a quarter and two thirds of their height.
    const Side letters = plain.Bounds();
    const auto isWholeRow = [&](int y) {
        int x = letters.left;
        while (x != letters.right && struck.At(x, y)) {
            ++x;
        }
        return x == letters.right;
    };
    int bar = 0;
    while (bar != kSide && !isWholeRow(bar)) {
        ++bar;
    }
    const int height = letters.bottom - letters.top;
    EXPECT_TRUE(4 * (letters.bottom - bar) > height && 9 * (letters.bottom - bar) < 5 * height)
        << bar << ' ' << letters.top << ' ' << letters.bottom;
}

// One line is drawn in one go, several are drawn character by character.
TEST(SetSecretImage, TakesAmpersandsAsCharacters) {
    EXPECT_GT(Draw("&", {}).Count(), 10);
    for (const std::string text : {"&", "&&", "I&I", "I&&I&", "&I"}) {
        EXPECT_EQ(Draw(text.c_str(), {}), Draw((text + "\n").c_str(), {})) << text;
    }
    EXPECT_GT(Draw("&&", {}).Count(), Draw("&", {}).Count());
}

// Two bytes are one character where the first one says so, and a character of a column is as high as any other.
TEST(SetSecretImage, TakesTwoBytesForOneCharacter) {
    const int second = Draw("AI", {0, 0, 0, 0, 2, 0}).Bounds().bottom;
    const int third = Draw("AAI", {0, 0, 0, 0, 2, 0}).Bounds().bottom;
    for (const int lead : {0x81, 0x83, 0x9F, 0xE0, 0xFC}) {
        const char text[] = {static_cast<char>(lead), 'A', 'I', '\0'};
        EXPECT_EQ(Draw(text, {0, 0, 0, 0, 2, 0}).Bounds().bottom, second) << lead;
    }
    for (const int single : {0x80, 0xA0, 0xDF, 0xFD}) {
        const char text[] = {static_cast<char>(single), 'A', 'I', '\0'};
        EXPECT_EQ(Draw(text, {0, 0, 0, 0, 2, 0}).Bounds().bottom, third) << single;
    }
    // The last byte stands alone.
    EXPECT_EQ(Draw("I\x83", {0, 0, 0, 0, 2, 0}).Bounds().top, Draw("I", {0, 0, 0, 0, 2, 0}).Bounds().top);
}

int HeightOf(const Marks& marks) {
    const Side side = marks.Bounds();
    return side.bottom - side.top;
}

TEST(SetSecretImage, TurnsAllOfItsLines) {
    const int height = LineHeight(Draw("I", {}), Draw("I\nI", {}));
    const int along = Draw("II\n", {}).Bounds().right - Draw("I\n", {}).Bounds().right;
    struct Next {
        DWORD angle;
        int dx, dy; // of the next line
        int below;  // how much longer one more makes a column
    };
    for (const auto& [angle, dx, dy, below] :
         {Next{90, height, 0, along}, {180, 0, -height, height}, {270, -height, 0, along}}) {
        const Marks one = Draw("I\n", {0, 0, 0, 0, 0, angle});
        EXPECT_EQ(Draw("I\nI", {0, 0, 0, 0, 0, angle}), Twice(one, dx, dy)) << angle;
        // The turned characters of a column may be rounded otherwise than those of a line.
        EXPECT_NEAR(HeightOf(Draw("II", {0, 0, 0, 0, 2, angle})) - HeightOf(Draw("I", {0, 0, 0, 0, 2, angle})), below,
                    1)
            << angle;
        // Columns as a whole begin in the corner of the angle; each character stands turned in its cell.
        const Side columns = Draw("II\nI", {0, 0, 0, 0, 2, angle}).Bounds();
        EXPECT_TRUE(angle == 90 ? columns.left < 2 * height : columns.right > kSide - 2 * height) << angle;
        EXPECT_TRUE(angle == 270 ? columns.top < 2 * height : columns.bottom > kSide - 2 * height) << angle;
    }
}

} // namespace
} // namespace test
