// Straightening against a slow one that works pixel by pixel.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <utility>

#include "api/export_table.h"
#include "qv8com.h"
#include "support/emptied.h"

namespace test {
namespace {

using Corners = std::array<POINT, 4>;

Block Straighten(HGLOBAL image, const Corners& at) {
    SetErrorStatus(kUntouched);
    return Block(QV8Affine(image, at[0].x, at[0].y, at[1].x, at[1].y, at[2].x, at[2].y, at[3].x, at[3].y, 1, 0, 0, 0));
}

// --- The slow way
// -----------------------------------------------------------------------------------------------------

struct Expected {
    int status = QV8_STATUS_SUCCESS;
    Picture result;
    std::vector<std::pair<int, int>> progress; // current and last
};

void CopySlowly(const Picture& source, const Corners& p, Expected& expected) {
    Picture& result = expected.result;
    const auto width = static_cast<int>(p[3].x - p[0].x);
    const auto height = static_cast<int>(p[0].y - p[1].y);
    int row = height - 1;
    for (int y = static_cast<int>(p[1].y); y != p[0].y; ++y, --row) {
        const std::size_t from = source.PixelOffset() +
                                 static_cast<std::size_t>(source.Height() - y) * source.RowBytes() +
                                 static_cast<std::size_t>(p[0].x) * static_cast<std::size_t>(source.Bits()) / 8;
        for (std::size_t i = 0; i != RowBytesOf(source.Bits(), width); ++i) {
            if (row < result.Height() && i < result.RowBytes() && from + i < source.bytes.size()) {
                result.bytes[result.PixelAddress(0, row) + i] = source.bytes[from + i];
            }
        }
        expected.progress.emplace_back(y, height);
    }
}

void Put(const Picture& source, int x, int row, Picture& result, int toX, int toRow) {
    if (toX >= result.Width() || toRow >= result.Height()) {
        return;
    }
    const bool outside = row >= source.Height();
    if (source.Bits() <= 8) {
        result.SetIndex(toX, toRow, outside ? 0 : source.Index(x, row));
    } else {
        result.SetColour(toX, toRow, outside ? Colour{0, 0, 0} : source.ColourAt(x, row));
    }
}

void DistortSlowly(const Picture& source, const Corners& p, Expected& expected) {
    Picture& result = expected.result;
    const double x1 = p[0].x, x2 = p[1].x, x3 = p[2].x, x4 = p[3].x;
    const double y1 = p[0].y, y2 = p[1].y, y3 = p[2].y, y4 = p[3].y;
    const double area = (x4 - x1) * (y2 - y1) - (y4 - y1) * (x2 - x1);
    if (area == 0) {
        expected.status = kUntouched;
        return;
    }
    const double a = ((x3 - x1) * (y2 - y1) - (y3 - y1) * (x2 - x1)) / area;
    const double b = ((y3 - y1) * (x4 - x1) - (x3 - x1) * (y4 - y1)) / area;
    const double left = std::min(x1, x2), right = std::max(x3, x4);
    const double top = std::min(y2, y3), bottom = std::max(y1, y4);
    const double width = result.Width(), height = result.Height();
    for (double y = top; y < bottom; ++y) {
        for (double x = left; x < right; ++x) {
            const double s = ((y2 - y1) * (x - x1) - (x2 - x1) * (y - y1)) / area;
            const double t = ((x4 - x1) * (y - y1) - (y4 - y1) * (x - x1)) / area;
            const double m = (b - 1) * s;
            const double n = (a - 1) * t - m;
            const double discriminant = (n + 1) * (n + 1) + 4 * m;
            if (discriminant < 0) {
                continue;
            }
            const double root = std::sqrt(discriminant);
            const double d1 = 1 - n + root;
            const double d2 = root + n + 1;
            if (d1 < 0.0001 || d2 < 0.0001) {
                continue;
            }
            const double column = std::trunc(width * (2 * s / d2));
            const double fromTop = std::trunc(height - height * (2 * t / d1));
            if (column < 0 || column >= width || fromTop < 0 || fromTop >= height) {
                continue;
            }
            const int toX = static_cast<int>(column);
            const int toRow = result.Height() - static_cast<int>(fromTop) - 1;
            const int row = source.Height() - static_cast<int>(y);
            Put(source, static_cast<int>(x), row, result, toX, toRow);
            Put(source, static_cast<int>(x), row, result, toX + 1, toRow);
            Put(source, static_cast<int>(x), row, result, toX, toRow + 1);
        }
        expected.progress.emplace_back(static_cast<int>(y), static_cast<int>(bottom - top));
    }
}

Expected SlowlyStraightened(const Picture& source, Corners p) {
    for (POINT& point : p) {
        point.x = std::clamp<LONG>(point.x, 0, source.Width() - 1);
        point.y = std::clamp<LONG>(point.y, 0, source.Height() - 1);
    }
    std::stable_sort(p.begin(), p.end(), [](const POINT& one, const POINT& other) { return one.x < other.x; });
    if (p[0].y < p[1].y) {
        std::swap(p[0], p[1]);
    }
    if (p[2].y > p[3].y) {
        std::swap(p[2], p[3]);
    }
    const auto width = static_cast<int>(std::min(p[2].x, p[3].x) - std::max(p[0].x, p[1].x));
    const auto height = static_cast<int>(std::min(p[0].y, p[3].y) - std::max(p[1].y, p[2].y));
    Expected expected;
    if (width < 1 || height < 1) {
        expected.status = QV8_STATUS_PARAMETER;
        return expected;
    }
    expected.result = Emptied(source, width, height);
    const auto isNear = [](LONG one, LONG other) { return std::abs(static_cast<long>(one - other)) <= 2; };
    const bool isUpright =
        isNear(p[0].x, p[1].x) && isNear(p[2].x, p[3].x) && isNear(p[1].y, p[2].y) && isNear(p[0].y, p[3].y);
    (isUpright ? CopySlowly : DistortSlowly)(source, p, expected);
    return expected;
}

// ---------------------------------------------------------------------------------------------------------------------

// True when there is a result.
bool Check(const Source& source, const Corners& corners) {
    std::string trace;
    for (const POINT& corner : corners) {
        trace += std::to_string(corner.x) + "," + std::to_string(corner.y) + " ";
    }
    SCOPED_TRACE(trace);
    const Expected expected = SlowlyStraightened(source.Content(), corners);
    Block result;
    const hooks::Report report = hooks::Watch({}, [&] { result = Straighten(source.Handle(), corners); });
    EXPECT_EQ(GetErrorStatus(), expected.status);
    EXPECT_EQ(result != nullptr, expected.status == QV8_STATUS_SUCCESS);
    EXPECT_EQ(report.blocks.size(), result != nullptr ? 1U : 0U);
    if (result != nullptr) {
        EXPECT_TRUE(Holds(result.get(), expected.result));
    }
    EXPECT_EQ(report.progress.size(), expected.progress.size());
    for (std::size_t i = 0; i < std::min(report.progress.size(), expected.progress.size()); ++i) {
        const hooks::ProgressCall& step = report.progress[i];
        EXPECT_EQ(std::pair(step.current, step.last), expected.progress[i]);
        EXPECT_TRUE(step.fromPercent == 0 && step.toPercent == 100);
    }
    EXPECT_TRUE(source.Untouched());
    return result != nullptr;
}

// Corners of a picture's own, each up to `slant` inside or, now and then, far away; in random order.
Corners RandomCorners(int width, int height, int slant, Random& random) {
    const auto off = [&] { return LONG{random.Between(-1, slant)}; };
    const LONG right = width - 1 - random.Between(0, width / 4);
    const LONG bottom = height - 1 - random.Between(0, height / 4);
    const LONG left = random.Between(0, width / 4);
    const LONG top = random.Between(0, height / 4);
    Corners corners = {{{left + off(), bottom - off()},
                        {left + off(), top + off()},
                        {right - off(), top + off()},
                        {right - off(), bottom - off()}}};
    if (random.Chance(5)) {
        corners[0] = {-0x7FFFFFFF - 1, 0x7FFFFFFF};
        corners[2] = {0x7FFFFFFF, -0x7FFFFFFF - 1};
    }
    for (std::size_t last = 3; last > 0; --last) {
        std::swap(corners[last], corners[static_cast<std::size_t>(random.Between(0, static_cast<int>(last)))]);
    }
    return corners;
}

TEST(Affine, FollowsItsRuleAtEveryDepth) {
    Random random(86);
    for (const Layout& layout : Layouts()) {
        int results = 0;
        for (int i = 0; i != 120; ++i) {
            const int width = i == 0 ? 1 : i == 1 ? 700 : RandomSide(random);
            const int height = i == 0 ? 1 : RandomSide(random);
            SCOPED_TRACE(std::string(layout.name) + " " + std::to_string(width) + " x " + std::to_string(height));
            const Source source(RandomPicture(layout, width, height, random));
            const int slant = i % 3 == 0 ? 1 : i % 3 == 1 ? std::min(width, height) / 3 : std::max(width, height);
            results += Check(source, RandomCorners(width, height, slant, random)) ? 1 : 0;
            ASSERT_FALSE(HasFailure());
        }
        EXPECT_GE(results, 60);
    }
}

TEST(Affine, CornersInEveryOrderAndWithoutArea) {
    Random random(87);
    const Source source(RandomPicture(LayoutNamed("24"), 16, 18, random));
    const Corners slanted = {{{3, 14}, {1, 2}, {13, 0}, {15, 17}}};
    const Bytes expected = ReadBlock(Straighten(source.Handle(), slanted).get());
    std::array<std::size_t, 4> order = {0, 1, 2, 3};
    do {
        const Corners corners = {{slanted[order[0]], slanted[order[1]], slanted[order[2]], slanted[order[3]]}};
        EXPECT_EQ(ReadBlock(Straighten(source.Handle(), corners).get()), expected);
    } while (std::next_permutation(order.begin(), order.end()));
    // Both edges at the lower left corner are on one line: no status is set.
    EXPECT_FALSE(Check(source, {{{5, 10}, {0, 5}, {12, 3}, {10, 15}}}));
    EXPECT_EQ(GetErrorStatus(), kUntouched);
    // On one line elsewhere there is an area.
    EXPECT_TRUE(Check(source, {{{0, 12}, {4, 4}, {15, 4}, {9, 16}}}));
    // A parallelogram.
    EXPECT_TRUE(Check(source, {{{4, 15}, {0, 3}, {10, 0}, {14, 12}}}));
    // Nothing between the edges.
    EXPECT_FALSE(Check(source, {{{0, 12}, {8, 4}, {15, 4}, {8, 16}}}));
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
}

// Pixels numbered by their place from the top, so that a wrong offset is seen with the bare eye.
TEST(Affine, CopiesByHand) {
    Picture picture = BlankPicture(8, 8, 6);
    for (int i = 0; i != 48; ++i) {
        picture.SetIndex(i % 8, 5 - i / 8, static_cast<unsigned>(i / 8 * 10 + i % 8 + 1));
    }
    const Source source(picture);
    struct Case {
        Corners corners;
        int width;
        std::vector<unsigned> rows; // from the top one down
    };
    const Case kCases[] = {
        // Each row is read from the one above.
        {{{{1, 4}, {1, 2}, {4, 2}, {4, 4}}}, 3, {12, 13, 14, 22, 23, 24}},
        {{{{1, 2}, {1, 0}, {4, 0}, {4, 2}}}, 3, {0, 0, 0, 2, 3, 4}},
        // The area begins at the lower left corner and is higher than the result: the upper row is left out.
        {{{{1, 4}, {2, 1}, {5, 2}, {5, 4}}}, 3, {12, 13, 14, 22, 23, 24}},
    };
    for (const Case& c : kCases) {
        const Block block = Straighten(source.Handle(), c.corners);
        const Picture result{ReadBlock(block.get())};
        ASSERT_EQ(result.Width(), c.width);
        for (std::size_t i = 0; i != c.rows.size(); ++i) {
            const int at = static_cast<int>(i);
            EXPECT_EQ(result.Index(at % c.width, result.Height() - 1 - at / c.width), c.rows[i]) << i;
        }
    }
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
