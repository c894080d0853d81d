// Layer, against its rule written out pixel by pixel.
#include <algorithm>
#include <climits>
#include <string>

#include "api/export_table.h"
#include "api/slow_blending.h"
#include "qv8com.h"

namespace test {
namespace {

struct Arguments {
    int opacity;
    Colour transparent, background;
    int x, y;
    bool clip;
};

Colour PixelOf(const Picture& base, const Picture& layer, const Arguments& arguments, int x, int row) {
    const int layerX = x - arguments.x;
    const int layerRow = row - (base.Height() - layer.Height() - arguments.y);
    const bool inBase = x >= 0 && x < base.Width() && row >= 0 && row < base.Height();
    const bool inLayer = layerX >= 0 && layerX < layer.Width() && layerRow >= 0 && layerRow < layer.Height();
    const Colour over = inLayer ? layer.ColourAt(layerX, layerRow) : arguments.background;
    if (!inBase) {
        return over;
    }
    const Colour under = base.ColourAt(x, row);
    if (!inLayer || arguments.opacity == 0 || over == arguments.transparent) {
        return under;
    }
    if (arguments.opacity == 255) {
        return over;
    }
    return Blend(arguments.opacity, under, over);
}

Picture Layered(const Picture& base, const Picture& layer, const Arguments& arguments) {
    const int bottom = base.Height() - layer.Height() - arguments.y;
    const bool clip = arguments.clip;
    const int left = clip ? 0 : std::min(0, arguments.x);
    const int lowest = clip ? 0 : std::min(0, bottom);
    const int right = clip ? base.Width() : std::max(base.Width(), arguments.x + layer.Width());
    const int top = clip ? base.Height() : std::max(base.Height(), bottom + layer.Height());
    Picture result = BlankPicture(24, right - left, top - lowest);
    BITMAPINFOHEADER header = {};
    header.biSize = 40;
    header.biWidth = right - left;
    header.biHeight = top - lowest;
    header.biPlanes = 1;
    header.biBitCount = 24;
    header.biSizeImage = static_cast<DWORD>(result.bytes.size() - 40);
    result.SetHeader(header);
    for (int row = lowest; row != top; ++row) {
        for (int x = left; x != right; ++x) {
            result.SetColour(x - left, row - lowest, PixelOf(base, layer, arguments, x, row));
        }
    }
    return result;
}

HGLOBAL CallLayer(HGLOBAL base, HGLOBAL layer, const Arguments& a) {
    SetErrorStatus(kUntouched);
    return QV8Layer(base, layer, static_cast<DWORD>(a.opacity), a.transparent.red, a.transparent.green,
                    a.transparent.blue, a.background.red, a.background.green, a.background.blue, a.x, a.y,
                    a.clip ? 2 : 0, 1, 0, 0, 0);
}

// Colours near the transparent one, in whole and in part.
void Sprinkle(Picture& picture, Colour colour, Random& random) {
    for (int row = 0; row != picture.Height() && picture.Bits() > 8; ++row) {
        for (int x = 0; x != picture.Width(); ++x) {
            if (random.Chance(30)) {
                Colour other = colour;
                BYTE* const channels[] = {&other.blue, &other.green, &other.red};
                if (random.Chance(50)) {
                    *channels[random.Between(0, 2)] ^= random.Byte();
                }
                picture.SetColour(x, row, other);
            }
        }
    }
}

TEST(Layer, FollowsItsRuleAtEveryDepthAndPlace) {
    Random random(60);
    for (int i = 0; i != 1500; ++i) {
        const Layout& baseLayout = RandomLayout(random);
        const Layout& layerLayout = random.Chance(40) ? LayoutNamed("24") : RandomLayout(random);
        const Source base(RandomPicture(baseLayout, RandomSide(random), random.Between(1, 12), random));
        Picture upper = RandomPicture(layerLayout, RandomSide(random), random.Between(1, 12), random);
        Arguments arguments = {random.Between(0, 255),
                               {random.Byte(), random.Byte(), random.Byte()},
                               {random.Byte(), random.Byte(), random.Byte()},
                               random.Between(-50, 50),
                               random.Between(-14, 14),
                               random.Chance(50)};
        if (random.Chance(30)) {
            arguments.opacity = random.Chance(50) ? 0 : 255;
        }
        if (upper.Bits() == 16) {
            arguments.transparent = Unpack16(Pack16(arguments.transparent, upper.Is565()), upper.Is565());
        }
        Sprinkle(upper, arguments.transparent, random);
        if (upper.Bits() <= 8) {
            arguments.transparent = upper.ColourAt(0, 0);
        }
        const Source layer(std::move(upper));
        SCOPED_TRACE(std::string(layerLayout.name) + " over " + baseLayout.name + " at " + std::to_string(arguments.x) +
                     ", " + std::to_string(arguments.y) + ", opacity " + std::to_string(arguments.opacity) +
                     (arguments.clip ? ", clipped" : ""));
        const Block result(CallLayer(base.Handle(), layer.Handle(), arguments));
        ASSERT_NE(result, nullptr) << GetErrorStatus();
        ASSERT_TRUE(Holds(result.get(), Layered(base.Content(), layer.Content(), arguments)));
        ASSERT_TRUE(base.Untouched() && layer.Untouched());
    }
}

// At the ends of the coordinates a clipped layer is nowhere, and a result around both pictures is too large.
TEST(Layer, TakesAnyPlace) {
    Random random(61);
    const Source base(RandomPicture(LayoutNamed("24"), 9, 7, random));
    const Source layer(RandomPicture(LayoutNamed("32"), 5, 4, random));
    Arguments arguments = {77, {1, 2, 3}, {4, 5, 6}, 0, 0, true};
    for (const int x : {INT_MIN, INT_MIN + 4, -1, 0, INT_MAX - 4, INT_MAX}) {
        for (const int y : {INT_MIN, INT_MIN + 4, -1, 0, INT_MAX - 4, INT_MAX}) {
            SCOPED_TRACE(std::to_string(x) + ", " + std::to_string(y));
            const bool isClose = x > -2 && x < 2 && y > -2 && y < 2;
            arguments.x = x;
            arguments.y = y;
            arguments.clip = true;
            Arguments elsewhere = arguments;
            elsewhere.x = isClose ? x : 1000;
            elsewhere.y = isClose ? y : 1000;
            const Block clipped(CallLayer(base.Handle(), layer.Handle(), arguments));
            EXPECT_TRUE(Holds(clipped.get(), Layered(base.Content(), layer.Content(), elsewhere)));
            if (!isClose) {
                arguments.clip = false;
                EXPECT_EQ(CallLayer(base.Handle(), layer.Handle(), arguments), nullptr);
                EXPECT_EQ(GetErrorStatus(), QV8_STATUS_MEMORY);
            }
        }
    }
}

// A picture may lie over itself.
TEST(Layer, TakesOnePictureTwice) {
    Random random(62);
    const Source picture(RandomPicture(LayoutNamed("16-565"), 33, 9, random));
    const Arguments arguments = {128, {0, 0, 0}, {9, 8, 7}, -10, -3, false};
    const Block result(CallLayer(picture.Handle(), picture.Handle(), arguments));
    EXPECT_TRUE(Holds(result.get(), Layered(picture.Content(), picture.Content(), arguments)));
    EXPECT_TRUE(picture.Untouched());
}

} // namespace
} // namespace test
