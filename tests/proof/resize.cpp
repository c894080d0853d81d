#include "api/resize_test.cpp"
#include "proof/proof.h"

namespace test {
bool ProveResize(const Proved& p) {
    if (!p.Is("QV8Resize") && !p.Is("QV8ResizeEx")) {
        return false;
    }
    const std::size_t own = p.Is("QV8Resize") ? 1 : 2;
    const bool hasLevels = p.layout.bits > 8 || (p.layout.acceptedBy & kAccept8Grey) != 0;
    const Pair expected =
        Resized({p.Source(), p.Mask()}, p.Number(own), p.Number(own + 1), p.Number(own + 2) != 0 && hasLevels);
    EXPECT_TRUE(Holds(p.image, expected.image));
    EXPECT_EQ(p.mask != nullptr, p.each.call.target.hMask != nullptr);
    if (p.mask != nullptr) {
        EXPECT_TRUE(Holds(p.mask, expected.mask));
    }
    return true;
}
} // namespace test
