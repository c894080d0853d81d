#include "proof/proof.h"
namespace test {
namespace {
const Proved* current = nullptr;
}
} // namespace test
#define CallWithArea(...) current->Copy()
#include "api/filter_special_test.cpp"
#undef CallWithArea

namespace test {
bool ProveSpecialFilter(const Proved& p) {
    current = &p;
    const Scene& scene = p.each.scene;
    if (p.Is("QV8RemoveNoise")) {
        if (p.Low(6) == 0) {
            CheckByLuminance(scene);
        } else if (p.Low(6) == 1) {
            CheckByChannel(scene, p.Low(7));
        } else {
            CheckPixels(
                scene, [&](const Call&) { return p.Copy(); }, [](const Picture&, int, int, Picture&) {});
        }
    } else if (p.Is("QV8AntiAlias")) {
        CheckFilter(
            scene, [&](const Call&) { return p.Copy(); },
            [](const Picture& source, int x, int row) {
                return EachChannel([&](BYTE Colour::*channel) {
                    int sum = 0;
                    int count = 0;
                    for (const Place place : PlacesAround(source, x, row)) {
                        if (place.row == row) {
                            sum += source.ColourAt(place.x, place.row).*channel;
                            ++count;
                        }
                    }
                    return sum / count;
                });
            });
    } else if (p.Is("QV8Outline")) {
        CheckOutline(scene, p.Low(6), p.Low(7), p.Low(8));
    } else if (p.Is("QV8Mosaic")) {
        if (p.Number(6) < 2 && p.Number(7) < 2) {
            EXPECT_EQ(p.status, QV8_STATUS_PARAMETER);
        } else {
            CheckMosaic(scene, p.Number(6), p.Number(7));
        }
    } else {
        return false;
    }
    return true;
}
} // namespace test
