#include "api/reduction_test.cpp"
#include "proof/proof.h"

namespace test {
bool ProveReduction(const Proved& p) {
    const int depth = p.Number(1) & 0xFFFF;
    if (!p.Is("QV8ConvertColor") || !IsReduction(p.Source().Bits(), depth)) {
        return false;
    }
    EXPECT_TRUE(Holds(p.image, SlowlyReduced(p.Source(), {depth, p.Number(2) != 0, p.Number(3) != 0, p.Low(4)})));
    return true;
}
} // namespace test
