#include "api/affine_test.cpp"
#include "proof/proof.h"

namespace test {
bool ProveAffine(const Proved& p) {
    if (!p.Is("QV8Affine")) {
        return false;
    }
    const Corners corners = {{{p.Number(1), p.Number(2)},
                              {p.Number(3), p.Number(4)},
                              {p.Number(5), p.Number(6)},
                              {p.Number(7), p.Number(8)}}};
    const Expected expected = SlowlyStraightened(p.Source(), corners);
    EXPECT_EQ(p.status, expected.status);
    if (p.image != nullptr) {
        EXPECT_TRUE(Holds(p.image, expected.result));
    }
    return true;
}
} // namespace test
