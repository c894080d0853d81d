// What is drawn and dragged on a picture, as gestures and the values that come of them.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "catalogue/text.h"
#include "tools/selection.h"
#include "tools/tool.h"

namespace {

constexpr Extent kPicture{100, 80};
int second = 0; // stands for a second picture, which no gesture looks into

// Words such as "p10,20" press, "m" moves, "M" moves with Shift, "r" releases, "d" is a double click, "k" and a number
// a key.
void Perform(Tool& tool, const std::string& gesture) {
    std::istringstream words(gesture);
    Position at;
    for (std::string word; words >> word;) {
        if (word[0] == 'k') {
            tool.Key(std::stoi(word.substr(1)));
            continue;
        }
        char comma = 0;
        std::istringstream(word.substr(1)) >> at.x >> comma >> at.y;
        const auto kind = word[0] == 'p'   ? MouseEvent::Kind::kPress
                          : word[0] == 'r' ? MouseEvent::Kind::kRelease
                          : word[0] == 'd' ? MouseEvent::Kind::kDoubleClick
                                           : MouseEvent::Kind::kMove;
        tool.Mouse({.kind = kind, .at = at, .reach = 2, .shift = word[0] == 'M'});
    }
}

std::string TextOf(const DrawnValues& values) {
    std::string text;
    for (const DrawnValue& drawn : values) {
        text += (text.empty() ? "" : " ") + drawn.name + "=" + catalogue::TextOf({}, drawn.value);
    }
    return text;
}

std::unique_ptr<Tool> MakeTool(const std::string& name) {
    constexpr std::array kForms{"rectangle", "ellipse", "polygon", "colour"};
    const auto* const form = std::find(kForms.begin(), kForms.end(), name);
    return form != kForms.end() ? MakeAreaTool(static_cast<AreaForm>(form - kForms.begin()), kPicture)
                                : MakeEffectTool(*catalogue::FindEffect(name), {kPicture, &second, {40, 30}});
}

TEST(WindowTools, MakeValuesOfGestures) {
    const struct {
        const char* tool;
        const char* gesture;
        const char* values;
    } kCases[] = {
        {"rectangle", "p10,20 m30,40 r30,40", "polygon=10,20 29,20 29,39 10,39"},
        {"rectangle", "p30.4,40 m9.6,19.7 r9,19", "polygon=10,20 29,20 29,39 10,39"},
        {"rectangle", "p10,20 r10,20", ""},
        {"rectangle", "p10,10 M30,15 r30,15", "polygon=10,10 29,10 29,29 10,29"},
        {"rectangle", "p10,20 m30,40 r30,40 p31,41 m51,62 r51,62", "polygon=10,20 49,20 49,60 10,60"},
        {"rectangle", "p10,20 m30,40 r30,40 p10,30 m0,0 r0,0", "polygon=0,20 29,20 29,39 0,39"},
        {"rectangle", "p10,20 m30,40 r30,40 p15,25 m25,15 r25,15 k40", "polygon=20,11 39,11 39,30 20,30"},
        {"rectangle", "p10,20 m30,40 r30,40 k27", ""},
        {"ellipse", "p10,20 m30,40 r30,40", "ellipse=10,20,30,40"},
        {"polygon", "p1,1 r1,1 p20,1 r20,1 p20,20 r20,20", ""},
        {"polygon", "p1,1 r1,1 p20,1 r20,1 p20,20 r20,20 d20,20 r20,20", "polygon=1,1 20,1 20,20"},
        {"polygon", "p1,1 r1,1 p20,1 m25,1 r25,1 p20,20 r20,20 p2,2 r2,2", "polygon=1,1 25,1 20,20"},
        {"polygon", "p1,1 r1,1 p9,9 r9,9 p20,1 r20,1 k8 k13 p9,9 m7,8 r7,8", "polygon=1,1 7,8"},
        {"polygon", "p1,1 r1,1 p9,9 r9,9 k13 p50,50 r50,50", ""},
        {"colour", "p5.9,6.2 r5,6", "pixel=5,6"},
        {"colour", "p-1,3 r-1,3", ""},
        {"affine", "", "corners=12,10 87,10 87,70 12,70"},
        {"affine", "p88,70 m200,75.5 r200,75", "corners=12,10 87,10 99,75 12,70"},
        {"set-secret-image", "p10,20 m30,40 r30,40", "rect=10,20,29,39"},
        {"panorama", "p10,10 r10,10 p116,17 r116,17 p90,70 r90,70", ""},
        {"panorama", "p10,10 r10,10 p116,17 r116,17 p90,70 r90,70 p198,70 r198,70 p90,70 m80,99 r80,99",
         "a1=10,10 a2=80,79 b1=5,6 b2=36,26"},
        {"layer", "p5,5 m15,25 r15,25 k109 k37", "x=9 y=20 opacity=239"},
        {"layer", "p50,50 m15,25 r15,25", "x=0 y=0 opacity=255"},
        {"paste-image", "p40,40 m50,60 r50,60", "x=60 y=60 opacity=255 angle=0"},
        {"paste-image", "p51,22 m33,41 r33,41", "x=50 y=40 opacity=255 angle=90"},
        {"paste-image", "p51,22 m33,41 r33,41 p51,60 m52,60 r52,60", "x=51 y=40 opacity=255 angle=90"},
        {"resize", "p100,80 m50,20 r50,20", "width=50 height=40 scale="},
        {"resize", "p100,80 M50,20 r50,20", "width=50 height=20 scale="},
        {"resize", "p100,40 m130.4,0 r130,0", "width=130 height=80 scale="},
        {"rotation", "p100,40 m50,0 r50,0 p50,0 M100,20 r100,20", "angle=15"},
    };
    for (const auto& [name, gesture, values] : kCases) {
        const auto tool = MakeTool(name);
        ASSERT_NE(tool, nullptr) << name;
        Perform(*tool, gesture);
        EXPECT_EQ(TextOf(tool->Values()), values) << name << ": " << gesture;
        const auto other = MakeTool(name);
        other->Follow(tool->Values());
        EXPECT_TRUE(name == std::string("colour") || TextOf(other->Values()) == values) << name << ": " << gesture;
    }
    EXPECT_EQ(MakeTool("sharp"), nullptr);
    EXPECT_EQ(MakeEffectTool(*catalogue::FindEffect("layer"), {kPicture, nullptr, {}}), nullptr);
}

TEST(WindowTools, KeepThePointUnderThePointerWhileZooming) {
    const Extent client{400, 300};
    const ViewMapping fit = Fit({1000, 500}, client);
    EXPECT_DOUBLE_EQ(fit.scale, 0.4);
    EXPECT_EQ(fit.top, 50);
    EXPECT_EQ(Fit({10, 10}, client).scale, 1);
    ViewMapping mapping = fit;
    const Position pointer{123, 77};
    const Position before = mapping.ToPicture(pointer);
    for (int i = 0; i != 4; ++i) {
        mapping = ZoomAround(mapping, pointer, ScaleAfter(mapping.scale, 1));
    }
    EXPECT_EQ(mapping.scale, 1); // the ladder meets 100 %
    EXPECT_NEAR(mapping.ToClient(before).x, pointer.x, 1e-9);
    EXPECT_NEAR(mapping.ToClient(before).y, pointer.y, 1e-9);
    EXPECT_EQ(ScaleAfter(1, 3), 2);
    EXPECT_EQ(ScaleAfter(32, 1), 32);
    EXPECT_EQ(ScaleAfter(1.0 / 64, -1), 1.0 / 64);
    const ViewMapping clamped = Clamp({1, 20, -900}, {1000, 500}, client);
    EXPECT_EQ(clamped.left, 0);
    EXPECT_EQ(clamped.top, -200);
}

// The set bits of a mask, row by row.
std::string BitsOf(const Selection& selection) {
    const LockedPicture mask(*selection.mask);
    std::string text;
    for (std::size_t y = 0; y != mask.Height(); ++y) {
        for (std::size_t x = 0; x != mask.Width(); ++x) {
            text += (mask.RowFromTop(y)[x / 8] >> (7 - x % 8) & 1) != 0 ? '#' : '.';
        }
        text += '/';
    }
    return text;
}

TEST(WindowTools, MakeMasksThroughTheLibrary) {
    const Picture image(QV8CreateImage(6, 4, 24, 10, 10, 10, ~DWORD{0}, 0, 0, 0));
    ASSERT_TRUE(image);
    const LockedPicture locked(image);
    locked.RowFromTop(1)[3 * 3] = locked.RowFromTop(0)[0] = 200; // blue at (3, 1) and (0, 0)
    const Selection box = SelectionFrom({{"polygon", std::vector<POINT>{{1, 1}, {3, 1}, {3, 2}, {1, 2}}}});
    EXPECT_EQ(BitsOf(AsMaskOf(image.Handle(), box)), "....../.###../.###../....../");
    EXPECT_EQ(BitsOf(AsMaskOf(image.Handle(), Inverted(box))), "######/#...##/#...##/######/");
    EXPECT_EQ(BitsOf(AsMaskOf(image.Handle(), SelectAll(image.Handle()))), "######/######/######/######/");
    const Selection all;
    const Selection blue = SelectColour(image.Handle(), all, {10, 10, 200}, 0, 5);
    EXPECT_EQ(BitsOf(blue), "#...../...#../....../....../");
    EXPECT_EQ(BitsOf(SelectColour(image.Handle(), box, {10, 10, 200}, 0, 5)), "....../...#../....../....../");
    EXPECT_EQ(BitsOf(Inverted(blue)), ".#####/###.##/######/######/");
    EXPECT_EQ(TextOf(AreaValues(Inverted(box))), "mask= polygon=1,1 3,1 3,2 1,2 ellipse= outside=1");
    EXPECT_TRUE(Inverted(all).IsEmpty());

    // Twice as large: each of the four sides of the inner pixel is a run of two pixels of the client area.
    const SelectionEdges edges = EdgesOf(blue, {6, 4}, {2, 10, 10}, {40, 40});
    std::set<std::string> runs;
    for (const RECT& run : edges.runs) {
        runs.insert(catalogue::TextOf({}, run));
    }
    EXPECT_EQ(runs, (std::set<std::string>{"10,10,12,11", "10,12,12,13", "10,10,11,12", "12,10,13,12", "16,12,18,13",
                                           "16,14,18,15", "16,12,17,14", "18,12,19,14"}));
}

} // namespace
