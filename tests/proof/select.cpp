#include "api/select_test.cpp"
#include "proof/proof.h"

namespace test {
bool ProveSelect(const Proved& p) {
    const bool byShape = p.Is("QV8SelectImage") || p.Is("QV8SelectImageEx");
    if (!byShape && !p.Is("QV8AutoSelectImage") && !p.Is("QV8AutoSelectImageEx")) {
        return false;
    }
    const std::size_t own = std::string(p.each.row.name).ends_with("Ex") ? 7 : 6;
    const Picture& source = p.Source();
    const Box box = BoxOf(p.each.scene.area, source.Width(), source.Height());
    Area area = p.each.scene.area;
    if (byShape && area.type == QV8_AREA_WHOLE) { // drawn as a polygon, too
        const LONG right = source.Width() - 1, bottom = source.Height() - 1;
        area.type = QV8_AREA_POLYGON;
        area.points = {{0, 0}, {right, 0}, {right, bottom}, {0, bottom}};
    }
    const std::vector<bool> pixels = PixelsInBox(area, box, source.Height());
    if (pixels.empty()) {
        EXPECT_EQ(p.image, nullptr);
        return true;
    }
    const Selection expected = byShape
                                   ? ShapeSelection(source, box, pixels, p.At(own))
                                   : ColourSelection(source, box, pixels, {p.At(own), p.Low(own + 3), p.Low(own + 4)});
    EXPECT_TRUE(Holds(p.image, expected.image));
    EXPECT_EQ(WithoutPadding({ReadBlock(p.mask)}).bytes, expected.mask.bytes);
    return true;
}
} // namespace test
