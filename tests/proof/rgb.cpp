#include "api/rgb_curves_test.cpp"
#include "proof/proof.h"

namespace test {
bool ProveRgb(const Proved& p) {
    Curves curves;
    if (p.Is("QV8RGBGamma")) {
        curves = GammaCurves({p.Real(6), p.Real(7), p.Real(8)});
    } else if (p.Is("QV8RGBLevel")) {
        curves = LevelCurves({p.Number(6), p.Number(7), p.Number(8)});
    } else if (p.Is("QV8RGBRev")) {
        curves = RevCurves({p.Number(6), p.Number(7), p.Number(8)});
    } else {
        return false;
    }
    const auto area = p.Area();
    if (!area && p.Source().Bits() > 8) {
        EXPECT_EQ(p.status, QV8_STATUS_DIALOG);
        return true;
    }
    EXPECT_TRUE(Holds(p.image, Curved(p.each.scene, area.value_or(std::vector<bool>()), curves)));
    return true;
}
} // namespace test
