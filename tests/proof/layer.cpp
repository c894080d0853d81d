#include "proof/proof.h"
#define Arguments LayerArguments
#include "api/layer_test.cpp"
#undef Arguments

namespace test {
bool ProveLayer(const Proved& p) {
    if (!p.Is("QV8Layer")) {
        return false;
    }
    const LayerArguments arguments = {p.Low(2), p.At(3), p.At(6), p.Number(9), p.Number(10), p.Number(11) != 0};
    EXPECT_TRUE(Holds(p.image, Layered(p.Source(), p.Second(), arguments)));
    return true;
}
} // namespace test
