#include "api/ycc_curves_test.cpp"
#include "proof/proof.h"

namespace test {
bool ProveYcc(const Proved& p) {
    if (p.Is("QV8SetGray")) {
        EXPECT_TRUE(Holds(p.image, SlowlyGrey(p.Source())));
        return true;
    }
    std::optional<Effect> effect;
    if (p.Is("QV8YCCGamma")) {
        if (std::max({std::fabs(p.Real(6)), std::fabs(p.Real(7)), std::fabs(p.Real(8))}) > 1e6) {
            return false; // beyond what the slow version converts to int
        }
        effect = GammaEffect(p.Real(6), p.Real(7), p.Real(8));
    } else if (p.Is("QV8YCCLevel")) {
        effect = LevelEffect(p.Number(6), p.Number(7), p.Number(8));
    } else if (p.Is("QV8YCCRev")) {
        effect = RevEffect(p.Number(6), p.Number(7), p.Number(8));
    } else if (p.Is("QV8Chroma")) {
        effect = ChromaEffect(p.Number(6));
    } else {
        return false;
    }
    const auto area = p.Area();
    if (!area && p.Source().Bits() > 8) {
        EXPECT_EQ(p.status, QV8_STATUS_DIALOG);
        return true;
    }
    if (p.Is("QV8Chroma") && p.Number(6) == 0) {
        return false;
    }
    EXPECT_TRUE(Holds(p.image, Changed(p.each.scene, area.value_or(std::vector<bool>()), *effect)));
    return true;
}
} // namespace test
