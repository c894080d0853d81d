// Panorama against its parts: the fit and the mask worked out here, scaling and pasting by their own functions.
#include <algorithm>
#include <climits>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

struct Marks {
    POINT a1, a2, b1, b2; // rows from the top
};

HGLOBAL Join(HGLOBAL base, HGLOBAL added, DWORD seamMode, const Marks& m, const BYTE* clear = nullptr) {
    SetErrorStatus(kUntouched);
    return QV8Panorama(base, added, seamMode, m.a1.x, m.a1.y, m.a2.x, m.a2.y, m.b1.x, m.b1.y, m.b2.x, m.b2.y, clear,
                       clear, clear, 1, 0, 0, 0);
}

// --- The slow way
// -----------------------------------------------------------------------------------------------------

// Inside the picture, rows from the bottom.
POINT Inside(POINT point, const Picture& picture) {
    return {std::clamp<LONG>(point.x, 0, picture.Width() - 1),
            picture.Height() - 1 - std::clamp<LONG>(point.y, 0, picture.Height() - 1)};
}

double Length(POINT from, POINT to) {
    return std::floor(std::hypot(from.x - to.x, from.y - to.y));
}

// Rounded once from a finer value.
double ArcTangent(double ratio) {
    return static_cast<double>(std::atan(static_cast<long double>(ratio)));
}

double Degrees(POINT from, POINT to) {
    const double dx = from.x < to.x ? to.x - from.x : from.x - to.x;
    const double dy = from.y < to.y ? to.y - from.y : from.y - to.y;
    const double up = dx == 0 ? 1.5707963285 : ArcTangent(dy / dx);
    const double across = dy == 0 ? 1.5707963285 : ArcTangent(dx / dy);
    double angle = 0;
    if (to.x >= from.x && to.y >= from.y) {
        angle = up;
    } else if (to.x < from.x && to.y >= from.y) {
        angle = across + 1.5707963285;
    } else if (to.x < from.x) {
        angle = up + 2 * 1.5707963285;
    } else {
        angle = across + 3 * 1.5707963285;
    }
    return angle / 3.141592657 * 180.0;
}

// Every row's column is looked at for the ends of the line.
void LineEnds(POINT b1, POINT b2, int width, int height, POINT& from, POINT& to) {
    if (b1.x == b2.x) {
        from = {b1.x, -10};
        to = {b1.x, height + 9};
    } else if (b1.y == b2.y) {
        from = {-10, height - 1 - b1.y};
        to = {width + 9, height - 1 - b1.y};
    } else {
        const double m = static_cast<double>(b2.y - b1.y) / (b2.x - b1.x);
        const double n = b1.y - b1.x * m;
        LONG least = width + 9;
        LONG greatest = -10;
        for (int row = -10; row <= height + 9; ++row) {
            const LONG x = static_cast<LONG>(std::lround((row - n) / m));
            least = std::min(least, std::max<LONG>(x, -10));
            greatest = std::max(greatest, std::min<LONG>(x, width + 9));
        }
        from = {least, height - 1 - static_cast<LONG>(least * m + n)};
        to = {greatest, height - 1 - static_cast<LONG>(greatest * m + n)};
    }
}

// White pixels that are connected with the corner, one neighbour after another, and the line.
Picture SeamMask(POINT b1, POINT b2, DWORD mode, int width, int height) {
    POINT from = {};
    POINT to = {};
    LineEnds(b1, b2, width, height, from, to);
    Picture mask = BlankPicture(1, width, height);
    EXPECT_TRUE(DrawLine(mask, from, to));
    const bool isUp = b2.y > b1.y;
    const bool isRight = b2.x > b1.x;
    POINT corner = isUp ? (isRight ? POINT{0, 0} : POINT{0, height - 1})
                        : (isRight ? POINT{width - 1, 0} : POINT{width - 1, height - 1});
    if (mode == 2) {
        corner = {width - 1 - corner.x, height - 1 - corner.y};
    }
    std::vector<POINT> places = {corner};
    while (!places.empty()) {
        const POINT p = places.back();
        places.pop_back();
        if (p.x < 0 || p.y < 0 || p.x >= width || p.y >= height || mask.Index(p.x, height - 1 - p.y) != 0) {
            continue;
        }
        mask.SetIndex(p.x, height - 1 - p.y, 1);
        for (const POINT next : {POINT{p.x - 1, p.y}, {p.x + 1, p.y}, {p.x, p.y - 1}, {p.x, p.y + 1}}) {
            places.push_back(next);
        }
    }
    return mask;
}

// Null with the status set where the panorama is to fail.
Block SlowlyJoined(const Source& base, const Source& added, DWORD mode, const Marks& marks, const BYTE* clear) {
    const POINT a1 = Inside(marks.a1, base.Content());
    const POINT a2 = Inside(marks.a2, base.Content());
    const POINT b1 = Inside(marks.b1, added.Content());
    const POINT b2 = Inside(marks.b2, added.Content());
    const int width = added.Content().Width();
    const int height = added.Content().Height();
    if (Length(b1, b2) == 0) {
        SetErrorStatus(QV8_STATUS_PARAMETER);
        return nullptr;
    }
    const double scale = Length(a1, a2) / Length(b1, b2);
    const bool hasSeam = mode == 1 || mode == 2;
    const Source mask(hasSeam ? SeamMask(b1, b2, mode, width, height) : BlankPicture(1, 1, 1));
    const ImageSet target = {added.Handle(), hasSeam ? mask.Handle() : nullptr};
    const auto newWidth = static_cast<int>(width * scale);
    const auto newHeight = static_cast<int>(height * scale);
    const ImageSet scaled = QV8Resize(&target, newWidth, newHeight, 1, 1, 0, 0, 0);
    const Block image(scaled.hImage);
    const Block scaledMask(scaled.hMask);
    if (image == nullptr) {
        return nullptr;
    }
    const auto turn = static_cast<int>((Degrees(a1, a2) - Degrees(b1, b2)) * 100.0);
    const double theta = turn / 100.0 * 3.141592657 / 180.0;
    const int dx = static_cast<int>(b1.x * scale) - (newWidth - 1) / 2;
    const int dy = static_cast<int>(b1.y * scale) - newHeight / 2;
    const int turnedX = static_cast<int>(std::cos(theta) * dx - std::sin(theta) * dy);
    const int turnedY = static_cast<int>(std::cos(theta) * dy + std::sin(theta) * dx);
    const LONG topRow = base.Content().Height() - 1 - a1.y;
    const auto channel = [clear](int i) { return clear != nullptr ? clear + i : nullptr; };
    return Block(QV8PasteImage(base.Handle(), &scaled, turn, 0, 0, 255, channel(0), channel(1), channel(2),
                               a1.x - turnedX, topRow + turnedY, 0, 1, 0, 0, 0));
}

// ---------------------------------------------------------------------------------------------------------------------

POINT RandomPoint(const Picture& picture, Random& random) {
    const LONG x = random.Between(-4, picture.Width() + 3);
    return {x, random.Between(-4, picture.Height() + 3)};
}

TEST(Panorama, IsMadeOfItsParts) {
    Random random(95);
    int joined = 0;
    for (int i = 0; i != 600; ++i) {
        const Source base(RandomPicture(LayoutNamed("24"), random.Between(1, 40), random.Between(1, 30), random));
        const Source added(
            RandomPicture(LayoutNamed("24-table"), random.Between(1, 40), random.Between(1, 40), random));
        Marks marks = {RandomPoint(base.Content(), random), RandomPoint(base.Content(), random),
                       RandomPoint(added.Content(), random), RandomPoint(added.Content(), random)};
        if (random.Chance(30)) { // directions that differ by quarters
            marks.b2 = {marks.b1.x + 2 * (marks.a2.y - marks.a1.y), marks.b1.y - 2 * (marks.a2.x - marks.a1.x)};
        }
        if (random.Chance(20)) {
            (random.Chance(50) ? marks.b2.x : marks.a2.x) = random.Chance(50) ? marks.b1.x : marks.a1.x;
        }
        const auto mode = static_cast<DWORD>(random.Between(0, 3));
        const BYTE blue = added.Content().ColourAt(0, 0).blue;
        const BYTE clear[3] = {blue, blue, blue};
        const BYTE* const itsClear = random.Chance(30) ? clear : nullptr;
        if (std::pair(marks.a1.x, marks.a1.y) == std::pair(marks.a2.x, marks.a2.y) ||
            std::pair(marks.b1.x, marks.b1.y) == std::pair(marks.b2.x, marks.b2.y)) {
            continue;
        }
        const Block expected = SlowlyJoined(base, added, mode, marks, itsClear);
        const int status = GetErrorStatus();
        const Block result(Join(base.Handle(), added.Handle(), mode | 0xAB00, marks, itsClear));
        ASSERT_EQ(GetErrorStatus(), status);
        ASSERT_EQ(ReadBlock(result.get()), ReadBlock(expected.get())) << i << ", mode " << mode;
        ASSERT_TRUE(base.Untouched() && added.Untouched());
        joined += result != nullptr ? 1 : 0;
    }
    EXPECT_GT(joined, 300);
}

// The columns and rows (from the top) that a white picture covers on a black base.
RECT Covered(const Picture& result) {
    RECT covered = {INT_MAX, INT_MAX, -1, -1};
    for (int row = 0; row != result.Height(); ++row) {
        for (int x = 0; x != result.Width(); ++x) {
            if (result.ColourAt(x, row).green != 0) {
                const LONG y = result.Height() - 1 - row;
                covered = {std::min<LONG>(covered.left, x), std::min(covered.top, y), std::max<LONG>(covered.right, x),
                           std::max(covered.bottom, y)};
            }
        }
    }
    return covered;
}

TEST(Panorama, ByHand) {
    Picture white = BlankPicture(24, 40, 20);
    std::fill(white.bytes.begin() + 40, white.bytes.end(), BYTE{255});
    const Source added(white);
    const Source base(BlankPicture(24, 80, 60));
    struct Case {
        const char* what;
        DWORD seamMode;
        Marks marks;
        RECT covered; // both ends included
    };
    const Case kCases[] = {
        {"unturned", 0, {{30, 25}, {40, 25}, {5, 7}, {15, 7}}, {25, 18, 64, 37}},
        {"unknown mode", 3, {{30, 25}, {40, 25}, {5, 7}, {15, 7}}, {25, 18, 64, 37}},
        // B1 at column 10, row 12 from the bottom becomes (5, 6); the middle of 20 x 10 is (9, 5).
        {"halved", 0, {{30, 25}, {40, 25}, {10, 7}, {30, 7}}, {25, 22, 44, 31}},
        // A line upwards: on the left of it is the first side, with the line.
        {"left of a line", 1, {{30, 30}, {30, 20}, {5, 17}, {5, 7}}, {25, 13, 30, 32}},
        {"right of a line", 2, {{30, 30}, {30, 20}, {5, 17}, {5, 7}}, {30, 13, 64, 32}},
        {"above a line", 1, {{30, 25}, {40, 25}, {5, 7}, {15, 7}}, {25, 18, 64, 25}},
        {"below a line", 2, {{30, 25}, {40, 25}, {5, 7}, {15, 7}}, {25, 25, 64, 37}},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.what);
        const Block result(Join(base.Handle(), added.Handle(), c.seamMode, c.marks));
        const RECT covered = Covered(Picture{ReadBlock(result.get())});
        EXPECT_EQ(covered.left, c.covered.left);
        EXPECT_EQ(covered.top, c.covered.top);
        EXPECT_EQ(covered.right, c.covered.right);
        EXPECT_EQ(covered.bottom, c.covered.bottom);
    }
}

TEST(Panorama, NeedsTwoPointsInEachPicture) {
    const Source base(BlankPicture(24, 9, 7));
    const Source added(BlankPicture(24, 5, 4));
    const Source wide(BlankPicture(24, 30000, 2));
    const Marks good = {{1, 1}, {6, 3}, {0, 0}, {3, 3}};
    const std::pair<Marks, int> kCases[] = {
        {{{1, 1}, {1, 1}, good.b1, good.b2}, QV8_STATUS_PARAMETER},
        {{good.a1, good.a2, {INT_MAX, 2}, {INT_MAX, 2}}, QV8_STATUS_PARAMETER},
        // One point once they are inside.
        {{{INT_MIN, -1}, {-3, INT_MIN}, good.b1, good.b2}, QV8_STATUS_PARAMETER},
        {{good.a1, good.a2, {9, INT_MAX}, {INT_MAX, 9}}, QV8_STATUS_PARAMETER},
        // Scaled to less than a pixel.
        {{{1, 1}, {2, 1}, {0, 0}, {29999, 0}}, QV8_STATUS_PARAMETER},
    };
    for (const auto& [marks, status] : kCases) {
        EXPECT_EQ(Join(base.Handle(), (marks.b2.x == 29999 ? wide : added).Handle(), 2, marks), nullptr);
        EXPECT_EQ(GetErrorStatus(), status);
    }
    // Equal points are told from bad pictures by their order: no picture, equal points, a bad picture.
    EXPECT_EQ(Join(base.Handle(), nullptr, 0, kCases[0].first), nullptr);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PICTURE);
    // Enlarged beyond what a picture can be.
    EXPECT_EQ(Join(wide.Handle(), wide.Handle(), 1, {{0, 0}, {29999, 0}, {0, 0}, {1, 0}}), nullptr);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_MEMORY);
}

TEST(Panorama, ReportsHalfForEachStage) {
    const Source base(BlankPicture(24, 9, 7));
    const Source added(BlankPicture(24, 8, 4));
    const hooks::Report report = hooks::Watch({}, [&] {
        Block(Join(base.Handle(), added.Handle(), 1, {{1, 1}, {5, 1}, {2, 1}, {6, 1}})).reset();
    });
    ASSERT_EQ(report.progress.size(), 4U + 7U);
    for (std::size_t i = 0; i != report.progress.size(); ++i) {
        EXPECT_EQ(report.progress[i].fromPercent, i < 4 ? 0 : 50);
        EXPECT_EQ(report.progress[i].toPercent, i < 4 ? 50 : 100);
    }
}

} // namespace
} // namespace test
