// Curves on luminance and colour differences, chroma and grey, against the rules written out pixel by pixel. Pixels sum
// products from single-precision tables; entries of colour tables are summed in double precision.
#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <string>

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

struct Ycc {
    int y, cr, cb;
};

Ycc ForwardPixel(const Colour& c, float offset) {
    const auto product = [](BYTE value, float factor) { return static_cast<float>(value) * factor; };
    return {static_cast<int>(product(c.red, 0.299F) + product(c.green, 0.587F) + product(c.blue, 0.114F)),
            static_cast<int>(product(c.red, 0.5F) + product(c.green, -0.41869F) + product(c.blue, -0.08131F) + offset),
            static_cast<int>(product(c.red, -0.16874F) + product(c.green, -0.33126F) + product(c.blue, 0.5F) + offset)};
}

Ycc ForwardEntry(const Colour& c, double offset) {
    return {static_cast<int>(0.299 * c.red + 0.587 * c.green + 0.114 * c.blue),
            static_cast<int>(0.5 * c.red - 0.41869 * c.green - 0.08131 * c.blue + offset),
            static_cast<int>(-0.16874 * c.red - 0.33126 * c.green + 0.5 * c.blue + offset)};
}

BYTE Truncated(float value) {
    return static_cast<BYTE>(value < 0 ? 0 : value > 255 ? 255 : static_cast<int>(value));
}

Colour Back(float y, float cr, float cb) {
    return {Truncated(y + 1.772F * cb), Truncated(y - 0.34414F * cb - 0.71414F * cr), Truncated(y + 1.402F * cr)};
}

using Change = std::function<Colour(const Colour&)>;

// What an effect does to pixels and to entries of a colour table.
struct Effect {
    const char* name;
    Change pixel;
    Change entry;
    std::function<HGLOBAL(const Call&)> call;
};

double Curve(int value, double gamma) {
    const double x = value / 255.0;
    return (x - gamma * (std::sqrt(x) - x)) * 255.0;
}

Effect GammaEffect(double gammaY, double gammaCr, double gammaCb) {
    const auto whole = [](double value) { return static_cast<float>(static_cast<int>(value)); };
    const auto rounded = [](double value) { return static_cast<double>(static_cast<float>(value)); };
    return {"gamma",
            [=](const Colour& c) {
                const Ycc f = ForwardPixel(c, 128.0F);
                return Back(whole(rounded(Curve(f.y, gammaY))), whole(rounded(Curve(f.cr, gammaCr))) - 128,
                            whole(rounded(Curve(f.cb, gammaCb))) - 128);
            },
            [=](const Colour& c) {
                const Ycc f = ForwardEntry(c, 128.0);
                return Back(whole(Curve(f.y, gammaY)), whole(Curve(f.cr, gammaCr)) - 128,
                            whole(Curve(f.cb, gammaCb)) - 128);
            },
            [=](const Call& call) { return CallWithArea(QV8YCCGamma, call, gammaY, gammaCr, gammaCb); }};
}

Effect LevelEffect(LONG levelY, LONG levelCr, LONG levelCb) {
    // Sums wrap around in 32 bits.
    const auto sum = [](int value, LONG level, DWORD less) {
        return static_cast<float>(static_cast<LONG>(static_cast<DWORD>(value) + static_cast<DWORD>(level) - less));
    };
    const auto change = [=](const Ycc& f) {
        return Back(sum(f.y, levelY, 0), sum(f.cr, levelCr, 128), sum(f.cb, levelCb, 128));
    };
    return {"level", [=](const Colour& c) { return change(ForwardPixel(c, 128.0F)); },
            [=](const Colour& c) { return change(ForwardEntry(c, 128.0)); },
            [=](const Call& call) { return CallWithArea(QV8YCCLevel, call, levelY, levelCr, levelCb); }};
}

Effect RevEffect(BOOL invertY, BOOL invertCr, BOOL invertCb) {
    const auto flip = [](BOOL invert, int value) { return static_cast<float>(invert != 0 ? 255 - value : value); };
    const auto change = [=](const Ycc& f) {
        return Back(flip(invertY, f.y), flip(invertCr, f.cr) - 128, flip(invertCb, f.cb) - 128);
    };
    return {"rev", [=](const Colour& c) { return change(ForwardPixel(c, 128.0F)); },
            [=](const Colour& c) { return change(ForwardEntry(c, 128.0)); },
            [=](const Call& call) { return CallWithArea(QV8YCCRev, call, invertY, invertCr, invertCb); }};
}

Effect ChromaEffect(LONG chroma) {
    const LONG clamped = chroma < -100 ? -100 : chroma > 1000 ? 1000 : chroma;
    const auto factor = static_cast<float>((clamped + 100) / 100.0);
    const auto change = [=](const Ycc& f) {
        return Back(static_cast<float>(f.y), static_cast<float>(f.cr) * factor, static_cast<float>(f.cb) * factor);
    };
    return {"chroma", [=](const Colour& c) { return change(ForwardPixel(c, 0.0F)); },
            [=](const Colour& c) { return change(ForwardEntry(c, 0.0)); },
            [=](const Call& call) { return CallWithArea(QV8Chroma, call, chroma); }};
}

Picture Changed(const Scene& scene, const std::vector<bool>& area, const Effect& effect) {
    Picture picture = scene.picture.Content();
    BITMAPINFOHEADER header = picture.Header();
    header.biSizeImage = static_cast<DWORD>(picture.RowBytes()) * static_cast<DWORD>(header.biHeight);
    picture.SetHeader(header);
    for (std::size_t i = 0; picture.Bits() <= 8 && i != picture.ColourCount(); ++i) {
        BYTE* const entry = picture.TableEntry(i);
        const Colour colour = effect.entry({entry[0], entry[1], entry[2]});
        entry[0] = colour.blue;
        entry[1] = colour.green;
        entry[2] = colour.red;
    }
    for (int row = 0; picture.Bits() > 8 && row != picture.Height(); ++row) {
        for (int x = 0; x != picture.Width(); ++x) {
            if (area[static_cast<std::size_t>(row * picture.Width() + x)]) {
                picture.SetColour(x, row, effect.pixel(picture.ColourAt(x, row)));
            }
        }
    }
    return picture;
}

void Check(const Effect& effect, const Scene& scene) {
    const Picture& source = scene.picture.Content();
    const auto area = PixelsOf(scene.area, scene.mask.Content(), source.Width(), source.Height());
    const Block result(effect.call(scene.AsCall()));
    if (!area && source.Bits() > 8) {
        EXPECT_EQ(result, nullptr);
        return;
    }
    ASSERT_NE(result, nullptr) << GetErrorStatus();
    EXPECT_TRUE(Holds(result.get(), Changed(scene, area.value_or(std::vector<bool>()), effect)));
    EXPECT_TRUE(scene.Untouched());
}

Effect RandomEffect(Random& random) {
    const auto gamma = [&] { return random.Between(-1000, 1000) / 250.0; };
    const auto level = [&] { return LONG{random.Between(-300, 300)}; };
    switch (random.Between(0, 3)) {
    case 0:
        return GammaEffect(gamma(), gamma(), gamma());
    case 1:
        return LevelEffect(level(), level(), level());
    case 2:
        return RevEffect(random.Between(0, 1), random.Between(0, 2), random.Between(0, 1));
    default:
        return ChromaEffect(random.Between(-101, 300) == 0 ? 1 : random.Between(-120, 1200));
    }
}

TEST(YccCurves, FollowTheirRuleAtEveryDepthAndInEveryArea) {
    Random random(50);
    for (const Layout& layout : Layouts()) {
        for (const AreaForm form : AreaForms()) {
            for (int i = 0; i != 20; ++i) {
                const int width = i == 0 ? 1031 : RandomSide(random);
                const Scene scene = RandomScene(layout, form, width, random.Between(1, 20), random);
                const Effect effect = RandomEffect(random);
                SCOPED_TRACE(std::string(effect.name) + " at " + layout.name + ", area " + NameOf(form));
                Check(effect, scene);
                ASSERT_FALSE(HasFailure());
            }
        }
    }
}

TEST(YccCurves, LevelsAtTheEndsOfTheirType) {
    Random random(51);
    for (const char* const name : {"24", "8"}) {
        const Scene scene = RandomScene(LayoutNamed(name), AreaForm::kWhole, 300, 3, random);
        for (const LONG level : {LONG{0x7FFFFFFF}, LONG{0x7FFFFF80}, LONG{-0x7FFFFFFF - 1}, LONG{1000}}) {
            SCOPED_TRACE(level);
            Check(LevelEffect(level, 0, 0), scene);
            Check(LevelEffect(0, level, level), scene);
        }
    }
}

TEST(YccCurves, ParametersThatAreNoNumbersAreNoFault) {
    Random random(52);
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    for (const Layout& layout : Layouts()) {
        const Scene scene = RandomScene(layout, AreaForm::kWhole, 20, 3, random);
        for (const double wild : {kInfinite, -kInfinite, std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300}) {
            const Block result(GammaEffect(wild, -wild, wild).call(scene.AsCall()));
            EXPECT_NE(result, nullptr);
        }
    }
}

// What the parameters are called is what they do: the second one is the way to red, the third to blue.
TEST(YccCurves, ParametersComeInTheOrderLuminanceRedBlue) {
    Picture grey = BlankPicture(24, 1, 1);
    grey.SetColour(0, 0, {128, 128, 128});
    const Source source(grey);
    Call call;
    call.target.hImage = source.Handle();
    const auto colourAfter = [&](const Effect& effect) {
        return Picture{ReadBlock(Block(effect.call(call)).get())}.ColourAt(0, 0);
    };
    const Colour redder = colourAfter(LevelEffect(0, 100, 0));
    EXPECT_TRUE(redder.red > 200 && redder.green < 100 && redder.blue >= 126 && redder.blue <= 129);
    const Colour bluer = colourAfter(LevelEffect(0, 0, 100));
    EXPECT_TRUE(bluer.blue > 200 && bluer.green < 120 && bluer.red >= 126 && bluer.red <= 129);
    EXPECT_EQ(colourAfter(LevelEffect(1000, 0, 0)), (Colour{255, 255, 255}));
    const Colour inverted = colourAfter(RevEffect(1, 0, 0));
    EXPECT_TRUE(inverted.red >= 125 && inverted.red <= 128);
}

TEST(Chroma, NoChangeIsAnExactCopyAndLessIsGrey) {
    Random random(53);
    for (const Layout& layout : Layouts()) {
        const Scene scene = RandomScene(layout, AreaForm::kWhole, 37, 5, random);
        const Block same(ChromaEffect(0).call(scene.AsCall()));
        Bytes before = ReadBlock(scene.picture.Handle());
        Bytes after = ReadBlock(same.get());
        before.erase(before.begin(), before.begin() + 40);
        after.erase(after.begin(), after.begin() + 40);
        EXPECT_EQ(before, after) << layout.name;
        for (const LONG chroma : {LONG{-100}, LONG{-5000}, LONG{1000}, LONG{5000}}) {
            Check(ChromaEffect(chroma), scene);
        }
    }
}

// --- Grey ------------------------------------------------------------------------------------------------------------

unsigned GreyOf(const Colour& colour) {
    return static_cast<unsigned>(ForwardPixel(colour, 0.0F).y);
}

Picture SlowlyGrey(const Picture& source) {
    BITMAPINFOHEADER header = source.Header();
    const bool isPalette = header.biBitCount <= 8;
    const std::size_t full = isPalette ? std::size_t{1} << header.biBitCount : 0;
    if (isPalette && header.biClrUsed != full) {
        header.biClrUsed = 0;
    }
    if (!isPalette) {
        header.biSizeImage = static_cast<DWORD>(source.RowBytes()) * static_cast<DWORD>(header.biHeight);
    }
    Picture result = source;
    result.bytes.resize(isPalette ? 40 : source.PixelOffset());
    result.SetHeader(header);
    for (std::size_t i = 0; i != full; ++i) {
        const auto level = static_cast<BYTE>(i * 255 / (full - 1));
        result.bytes.insert(result.bytes.end(), {level, level, level, 0});
    }
    result.bytes.resize(result.bytes.size() + source.RowBytes() * static_cast<std::size_t>(source.Height()));
    for (int row = 0; row != source.Height(); ++row) {
        for (int x = 0; x != source.Width(); ++x) {
            const unsigned grey = GreyOf(source.ColourAt(x, row));
            const auto level = static_cast<BYTE>(grey);
            switch (source.Bits()) {
            case 1:
                result.SetIndex(x, row, grey > 127 ? 1 : 0);
                break;
            case 4:
                result.SetIndex(x, row, grey * 15 / 255);
                break;
            case 8:
                result.SetIndex(x, row, grey);
                break;
            default:
                result.SetColour(x, row, {level, level, level});
                break;
            }
        }
    }
    return result;
}

TEST(SetGray, FollowsItsRuleAtEveryDepth) {
    Random random(54);
    for (const Layout& layout : Layouts()) {
        for (int i = 0; i != 25; ++i) {
            SCOPED_TRACE(layout.name);
            const int width = i == 0 ? 1031 : RandomSide(random);
            const Source source(RandomPicture(layout, width, random.Between(1, 20), random));
            const Block result(QV8SetGray(source.Handle(), 1, 0, 0, 0));
            ASSERT_NE(result, nullptr) << GetErrorStatus();
            ASSERT_TRUE(Holds(result.get(), SlowlyGrey(source.Content())));
            EXPECT_TRUE(source.Untouched());
        }
    }
}

} // namespace
} // namespace test
