// Gamma, level and inversion of red, green and blue, against the rules written out pixel by pixel.
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

enum Channel { kRed, kGreen, kBlue };
using Curve = std::function<BYTE(Channel channel, BYTE value)>;

// A curve as it applies to pixels and to entries of a colour table, which may differ in precision.
struct Curves {
    Curve pixel;
    Curve entry;
};

template <class Number>
BYTE Truncated(Number value) {
    return static_cast<BYTE>(value < 0 ? 0 : value > 255 ? 255 : static_cast<int>(value));
}

Curves GammaCurves(const std::array<double, 3>& gamma) {
    const auto exact = [gamma](Channel channel, BYTE value) {
        const double x = value / 255.0;
        return (x - gamma[channel] * (std::sqrt(x) - x)) * 255.0;
    };
    return {[exact](Channel channel, BYTE value) {
                const auto stored = static_cast<float>(exact(channel, value));
                return Truncated(stored + 0.5F);
            },
            [exact](Channel channel, BYTE value) { return Truncated(exact(channel, value) + 0.5); }};
}

Curves LevelCurves(const std::array<LONG, 3>& level) {
    const Curve curve = [level](Channel channel, BYTE value) {
        const auto sum = static_cast<LONG>(DWORD{value} + static_cast<DWORD>(level[channel])); // wraps around
        return static_cast<BYTE>(std::clamp<LONG>(sum, 0, 255));
    };
    return {curve, curve};
}

Curves RevCurves(const std::array<BOOL, 3>& invert) {
    const Curve curve = [invert](Channel channel, BYTE value) {
        return static_cast<BYTE>(invert[channel] != 0 ? 255 - value : value);
    };
    return {curve, curve};
}

Picture Curved(const Scene& scene, const std::vector<bool>& area, const Curves& curves) {
    Picture picture = scene.picture.Content();
    BITMAPINFOHEADER header = picture.Header();
    header.biSizeImage = static_cast<DWORD>(picture.RowBytes()) * static_cast<DWORD>(header.biHeight);
    picture.SetHeader(header);
    for (std::size_t i = 0; picture.Bits() <= 8 && i != picture.ColourCount(); ++i) {
        BYTE* const entry = picture.TableEntry(i);
        entry[0] = curves.entry(kBlue, entry[0]);
        entry[1] = curves.entry(kGreen, entry[1]);
        entry[2] = curves.entry(kRed, entry[2]);
    }
    for (int row = 0; picture.Bits() > 8 && row != picture.Height(); ++row) {
        for (int x = 0; x != picture.Width(); ++x) {
            if (area[static_cast<std::size_t>(row * picture.Width() + x)]) {
                const Colour colour = picture.ColourAt(x, row);
                picture.SetColour(x, row,
                                  {curves.pixel(kBlue, colour.blue), curves.pixel(kGreen, colour.green),
                                   curves.pixel(kRed, colour.red)});
            }
        }
    }
    return picture;
}

struct Effect {
    const char* name;
    Curves curves;
    std::function<HGLOBAL(const Call&)> call;
};

Effect GammaEffect(double red, double green, double blue) {
    return {"gamma", GammaCurves({red, green, blue}),
            [=](const Call& call) { return CallWithArea(QV8RGBGamma, call, red, green, blue); }};
}

Effect LevelEffect(LONG red, LONG green, LONG blue) {
    return {"level", LevelCurves({red, green, blue}),
            [=](const Call& call) { return CallWithArea(QV8RGBLevel, call, red, green, blue); }};
}

Effect RevEffect(BOOL red, BOOL green, BOOL blue) {
    return {"rev", RevCurves({red, green, blue}),
            [=](const Call& call) { return CallWithArea(QV8RGBRev, call, red, green, blue); }};
}

Effect RandomEffect(Random& random) {
    Parameters any(random);
    switch (random.Between(0, 2)) {
    case 0: {
        static constexpr double kNotable[] = {0, 1, -1, 1e300, -1e300, 3};
        double gamma[3];
        for (double& channel : gamma) {
            channel = random.Chance(20) ? kNotable[random.Between(0, 5)] : any.Real(0, -4, 4);
        }
        return GammaEffect(gamma[0], gamma[1], gamma[2]);
    }
    case 1: {
        const LONG red = any.Wild(0, -300, 300);
        const LONG green = any.Wild(0, -100, 100);
        return LevelEffect(red, green, any.Wild(0, -10, 10));
    }
    default: {
        const BOOL red = any.Flag(0);
        const BOOL green = any.Flag(0);
        return RevEffect(red, green, any.Flag(0));
    }
    }
}

void Check(const Effect& effect, const Scene& scene) {
    const Picture& source = scene.picture.Content();
    const auto area = PixelsOf(scene.area, scene.mask.Content(), source.Width(), source.Height());
    const Block result(effect.call(scene.AsCall()));
    if (!area && source.Bits() > 8) {
        EXPECT_EQ(result, nullptr);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_DIALOG);
        return;
    }
    ASSERT_NE(result, nullptr) << GetErrorStatus();
    EXPECT_TRUE(Holds(result.get(), Curved(scene, area.value_or(std::vector<bool>()), effect.curves)));
    EXPECT_TRUE(scene.Untouched());
}

TEST(RgbCurves, FollowTheirRuleAtEveryDepthAndInEveryArea) {
    Random random(20);
    for (const Layout& layout : Layouts()) {
        for (const AreaForm form : AreaForms()) {
            for (int i = 0; i != 25; ++i) {
                const int width = RandomSide(random);
                const int height = random.Between(1, 30);
                const Scene scene = RandomScene(layout, form, width, height, random);
                const Effect effect = RandomEffect(random);
                SCOPED_TRACE(std::string(effect.name) + " at " + layout.name + ", " + Describe(scene.area));
                Check(effect, scene);
                ASSERT_FALSE(HasFailure());
            }
        }
    }
}

// Wide rows with every value of every channel, so that no lane of a fast loop is left out. One of the gammas has values
// that come out differently in single and in double precision.
TEST(RgbCurves, TreatEveryValueInEveryColumnAlike) {
    Random random(21);
    for (const char* const name : {"16", "16-565", "24", "32"}) {
        SCOPED_TRACE(name);
        const Scene scene = RandomScene(LayoutNamed(name), AreaForm::kWhole, 1031, 30, random);
        for (const Effect& effect :
             {GammaEffect(-1, 1, 0.37), GammaEffect(0, 12, -12), GammaEffect(-1.88, -1.04, -0.32),
              LevelEffect(7, -250, 255), LevelEffect(-256, 1, 256),
              LevelEffect(0x7FFFFFFF, 0x7FFFFF80, -0x7FFFFFFF - 1), RevEffect(1, 0, 0), RevEffect(0, 2, -1)}) {
            SCOPED_TRACE(effect.name);
            Check(effect, scene);
        }
    }
}

Scene WholeScene(const char* layout, Random& random) {
    return RandomScene(LayoutNamed(layout), AreaForm::kWhole, 37, 11, random);
}

// The bytes behind the header, which may differ in the size of the rows only.
Bytes Body(HGLOBAL picture) {
    const Bytes bytes = ReadBlock(picture);
    return bytes.size() < 40 ? Bytes() : Bytes(bytes.begin() + 40, bytes.end());
}

TEST(RgbCurves, NeutralParametersChangeNothing) {
    Random random(22);
    for (const Layout& layout : Layouts()) {
        if (layout.bits == 16) {
            continue; // may lose a level on the way through 8 bits
        }
        SCOPED_TRACE(layout.name);
        const Scene scene = WholeScene(layout.name, random);
        for (const Effect& effect : {GammaEffect(0, 0, 0), LevelEffect(0, 0, 0), RevEffect(0, 0, 0)}) {
            const Block result(effect.call(scene.AsCall()));
            EXPECT_EQ(Body(result.get()), Body(scene.picture.Handle())) << effect.name;
        }
    }
}

TEST(RgbCurves, SixteenBitsLoseALevelAndTheUnusedBit) {
    for (const auto& [before, after] : {std::pair<WORD, WORD>{0x0421, 0}, {0x8000, 0}, {0xFFFF, 0x7FFF}}) {
        Picture picture = BlankPicture(16, 1, 1);
        picture.bytes[40] = static_cast<BYTE>(before);
        picture.bytes[41] = static_cast<BYTE>(before >> 8U);
        const Block source = MakeBlock(picture.bytes);
        Call call;
        call.target.hImage = source.get();
        const Block result(LevelEffect(0, 0, 0).call(call));
        const Bytes body = Body(result.get());
        ASSERT_EQ(body.size(), 4U);
        EXPECT_EQ(body[0] | body[1] << 8, after);
    }
}

TEST(RgbCurves, LevelsBeyondTheRangeSaturate) {
    Random random(23);
    const Scene scene = WholeScene("24", random);
    const Block result(LevelEffect(300, -300, 0).call(scene.AsCall()));
    const Picture picture{ReadBlock(result.get())};
    for (int x = 0; x != picture.Width(); ++x) {
        const BYTE blue = scene.picture.Content().ColourAt(x, 3).blue;
        EXPECT_EQ(picture.ColourAt(x, 3), (Colour{blue, 0, 255}));
    }
}

TEST(RgbCurves, InvertedTwiceIsTheSource) {
    Random random(24);
    const Scene scene = WholeScene("24", random);
    const Block once(RevEffect(1, 1, 1).call(scene.AsCall()));
    Call call;
    call.target.hImage = once.get();
    const Block twice(RevEffect(1, 1, 1).call(call));
    EXPECT_NE(Body(once.get()), Body(scene.picture.Handle()));
    EXPECT_EQ(Body(twice.get()), Body(scene.picture.Handle()));
}

TEST(RgbCurves, ParametersThatAreNoNumbersAreNoFault) {
    Random random(25);
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    for (const Layout& layout : Layouts()) {
        const Scene scene = WholeScene(layout.name, random);
        const Block result(
            GammaEffect(kInfinite, -kInfinite, std::numeric_limits<double>::quiet_NaN()).call(scene.AsCall()));
        EXPECT_NE(result, nullptr);
    }
}

// Without its own rectangle a shape would be drawn one column or row off; progress tells the rows it was walked in.
TEST(RgbCurves, ShapesTakeTheRowsTheyTouch) {
    Random random(26);
    const Scene scene = WholeScene("24", random); // 37 x 11
    struct ShapeCase {
        Area area;
        int rows;
    };
    const ShapeCase kShapes[] = {
        {{QV8_AREA_POLYGON, {{3, 2}, {30, 4}, {9, 7}}, {}, 1}, 6},
        {{QV8_AREA_POLYGON, {{3, 2}, {30, 4}, {9, 7}}, {}, 0}, 11},
        {{QV8_AREA_POLYGON, {{-9, 2}, {-4, 4}, {-7, 7}}, {}, 1}, 6}, // collapses onto the first column
        {{QV8_AREA_POLYGON, {{99, 99}, {98, 98}}, {}, 1}, 1},
        {{QV8_AREA_ELLIPSE, {}, {30, 8, 3, 2}, 1}, 7},
        {{QV8_AREA_ELLIPSE, {}, {30, 8, 3, 2}, 0}, 11},
        {{QV8_AREA_ELLIPSE, {}, {-5, -5, 50, 50}, 1}, 11},
    };
    for (const ShapeCase& shape : kShapes) {
        SCOPED_TRACE(&shape - kShapes);
        Call call = scene.AsCall();
        call.area = shape.area;
        HGLOBAL result = nullptr;
        const hooks::Report report = hooks::Watch({}, [&] { result = RevEffect(1, 1, 1).call(call); });
        const Block block(result);
        ASSERT_EQ(static_cast<int>(report.progress.size()), shape.rows);
        for (int row = 0; row != shape.rows; ++row) {
            const hooks::ProgressCall& step = report.progress[static_cast<std::size_t>(row)];
            EXPECT_EQ(step.current, row);
            EXPECT_EQ(step.last, shape.rows - 1);
            EXPECT_EQ(step.fromPercent, 0);
            EXPECT_EQ(step.toPercent, 100);
        }
    }
}

TEST(RgbCurves, TablesReportEachEntry) {
    Random random(27);
    const std::pair<const char*, int> kCases[] = {
        {"1", 2}, {"1-short", 1}, {"4-short", 5}, {"8", 256}, {"8-short", 77}};
    for (const auto& [layout, entries] : kCases) {
        const Scene scene = WholeScene(layout, random);
        HGLOBAL result = nullptr;
        const hooks::Report report = hooks::Watch({}, [&] { result = LevelEffect(1, 2, 3).call(scene.AsCall()); });
        const Block block(result);
        ASSERT_EQ(static_cast<int>(report.progress.size()), entries) << layout;
        EXPECT_EQ(report.progress.back().current, entries - 1);
        EXPECT_EQ(report.progress.front().last, entries - 1);
    }
}

} // namespace
} // namespace test
