#include "api/convert_color_test.cpp"
#include "proof/proof.h"

namespace test {
bool ProveConversion(const Proved& p) {
    const int depth = p.Number(1) & 0xFFFF;
    if (!p.Is("QV8ConvertColor") || (depth != p.Source().Bits() && !IsDirect(p.Source().Bits(), depth))) {
        return false;
    }
    if (depth == p.Source().Bits()) {
        EXPECT_EQ(p.status, QV8_STATUS_PARAMETER);
        return true;
    }
    EXPECT_TRUE(Holds(p.image, Converted(p.Source(), depth)));
    return true;
}
} // namespace test
