#include "api/rotation_test.cpp"
#include "proof/proof.h"

namespace test {
bool ProveRotation(const Proved& p) {
    if (!p.Is("QV8Rotation") && !p.Is("QV8RotationEx")) {
        return false;
    }
    const std::size_t own = p.Is("QV8Rotation") ? 1 : 2;
    const Options options = {p.Number(own), p.Number(own + 1), p.Number(own + 2), static_cast<DWORD>(p.Number(own + 3)),
                             p.At(own + 4), p.Number(own + 7)};
    EXPECT_TRUE(Holds(p.image, SlowlyRotated(p.Source(), p.layout, options)));
    EXPECT_EQ(p.mask != nullptr, p.each.call.target.hMask != nullptr);
    if (p.mask != nullptr) {
        EXPECT_TRUE(Holds(p.mask, SlowlyRotated(p.Mask(), LayoutNamed("1"), options, true)));
    }
    return true;
}
} // namespace test
