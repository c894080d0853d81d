#include "proof/proof.h"
namespace test {
namespace {
const Proved* current = nullptr;
}
} // namespace test
#define CallWithArea(...) current->Copy()
#include "api/filter_test.cpp"
#undef CallWithArea

namespace test {
bool ProveFilter(const Proved& p) {
    current = &p;
    const Scene& scene = p.each.scene;
    const auto call = [&](const Call&) { return p.Copy(); };
    if (p.Is("QV8CustomFilter")) {
        Kernel kernel;
        std::copy_n(p.each.arguments.weights, 81, kernel.begin());
        const int divisor = p.Low(7);
        const int offset = p.Low(8);
        CheckFilter(scene, call, [&](const Picture& source, int x, int row) {
            const Colour old = source.ColourAt(x, row);
            const Colour all = Convolved(source, x, row, kernel, divisor, offset);
            const bool grey = source.Bits() == 8;
            return Colour{grey || p.Number(11) ? all.blue : old.blue, p.Number(10) ? all.green : old.green,
                          p.Number(9) ? all.red : old.red};
        });
    } else if (p.Is("QV8Sharp")) {
        const auto factor = static_cast<float>(std::min<int>(p.Low(6), 100) * 3.0 / 100.0);
        CheckFilter(scene, call,
                    [&](const Picture& source, int x, int row) { return Sharpened(source, x, row, factor); });
    } else if (p.Is("QV8Shade")) {
        CheckShade(scene, p.Low(6));
    } else if (p.Is("QV8Emboss")) {
        static constexpr int kTowards[8][2] = {{1, 0}, {1, -1}, {0, -1}, {-1, -1}, {-1, 0}, {-1, 1}, {0, 1}, {1, 1}};
        const int* const towards = kTowards[p.Low(6)];
        const int divisor = 6 - std::clamp<int>(p.Low(7), 1, 5);
        CheckFilter(scene, call, [&](const Picture& source, int x, int row) {
            return EachChannel([&](BYTE Colour::*channel) {
                int sum = 0;
                for (int dy = -1; dy <= 1; ++dy) {
                    for (int dx = -1; dx <= 1; ++dx) {
                        const int along = dx * towards[0] + dy * towards[1];
                        const int weight = towards[0] != 0 && towards[1] != 0 ? along : 2 * along;
                        sum += weight * (Repeated(source, x + dx, row + dy).*channel);
                    }
                }
                return Clamp(sum / divisor + p.Low(8));
            });
        });
    } else {
        return false;
    }
    return true;
}
} // namespace test
