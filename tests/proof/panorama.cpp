#include "api/panorama_test.cpp"
#include "proof/proof.h"

namespace test {
bool ProvePanorama(const Proved& p) {
    if (!p.Is("QV8Panorama")) {
        return false;
    }
    const Marks marks = {{p.Number(3), p.Number(4)},
                         {p.Number(5), p.Number(6)},
                         {p.Number(7), p.Number(8)},
                         {p.Number(9), p.Number(10)}};
    const bool isClear = p.each.arguments.values[11].pointer != nullptr;
    SetErrorStatus(0);
    const Source added(p.Second());
    const Source base(p.Source());
    const auto same = [](POINT a, POINT b) { return a.x == b.x && a.y == b.y; };
    const bool equal = same(Inside(marks.a1, p.Source()), Inside(marks.a2, p.Source())) ||
                       same(Inside(marks.b1, p.Second()), Inside(marks.b2, p.Second()));
    if (equal) {
        EXPECT_EQ(p.status, QV8_STATUS_PARAMETER);
        return true;
    }
    const Block expected = SlowlyJoined(base, added, p.Low(2), marks, isClear ? p.each.arguments.clear : nullptr);
    EXPECT_EQ(p.status, GetErrorStatus());
    EXPECT_EQ(ReadBlock(p.image), ReadBlock(expected.get()));
    return true;
}
} // namespace test
