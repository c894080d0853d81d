// Where a panorama puts its second picture, worked out by hand.
#include <algorithm>
#include <climits>

#include "api/export_table.h"

namespace test {
namespace {

struct MarkedPoints {
    POINT a1, a2, b1, b2; // rows from the top
};

HGLOBAL Join(HGLOBAL base, HGLOBAL added, DWORD seamMode, const MarkedPoints& m) {
    return QV8Panorama(base, added, seamMode, m.a1.x, m.a1.y, m.a2.x, m.a2.y, m.b1.x, m.b1.y, m.b2.x, m.b2.y, nullptr,
                       nullptr, nullptr, 1, 0, 0, 0);
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
        MarkedPoints marks;
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

} // namespace
} // namespace test
