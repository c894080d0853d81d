// Paste, against its rule written out pixel by pixel.
#include <algorithm>
#include <climits>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "api/export_table.h"
#include "api/slow_blending.h"
#include "qv8com.h"

namespace test {
namespace {

struct Arguments {
    LONG angle = 0;
    BOOL mirror = 0;
    BOOL flip = 0;
    int opacity = 255;
    std::optional<Colour> clear = std::nullopt;
    LONG x = 0;
    LONG y = 0;
    DWORD sampling = 0;
};

HGLOBAL Paste(HGLOBAL base, HGLOBAL image, HGLOBAL mask, const Arguments& a) {
    const ImageSet pasted = {image, mask};
    SetErrorStatus(kUntouched);
    return QV8PasteImage(base, &pasted, a.angle, a.mirror, a.flip, static_cast<DWORD>(a.opacity) | 0xAB00,
                         a.clear ? &a.clear->red : nullptr, a.clear ? &a.clear->green : nullptr,
                         a.clear ? &a.clear->blue : nullptr, a.x, a.y, a.sampling, 1, 0, 0, 0);
}

// --- The slow way
// -----------------------------------------------------------------------------------------------------

// A pixel of the pasted picture that is seen.
struct Seen {
    Colour colour;
    int x, y;
    bool isBlended = false;
};

struct Slow {
    const Picture& base;
    const Picture& image;
    const Picture* mask;
    bool isGreyRamp; // of 8 bits
    Arguments arguments;

    // What is seen at a place of the mirrored and flipped picture.
    std::optional<Seen> SeenAt(long long column, long long row) const {
        if (column < 0 || row < 0 || column >= image.Width() || row >= image.Height()) {
            return {};
        }
        const int x = arguments.mirror ? image.Width() - 1 - static_cast<int>(column) : static_cast<int>(column);
        const int y = arguments.flip ? image.Height() - 1 - static_cast<int>(row) : static_cast<int>(row);
        const Colour colour = image.ColourAt(x, y);
        if ((mask != nullptr && mask->Index(x, y) == 0) || colour == arguments.clear) {
            return {};
        }
        return Seen{colour, x, y};
    }
    Colour ColourAt(long long column, long long row, Colour under) const {
        const std::optional<Seen> seen = SeenAt(column, row);
        return seen ? seen->colour : under;
    }
    bool Blends() const {
        return arguments.sampling == 0 && (image.Bits() > 8 || isGreyRamp);
    }
    bool HaveOneFormat() const {
        return base.Bits() == image.Bits() && base.Is565() == image.Is565();
    }
};

// (x, y) from the middle, rows upwards, turned back by one quarter after another.
std::optional<Seen> SampleExactly(const Slow& slow, long long x, long long y, int quarters) {
    for (; quarters != 0; --quarters) {
        const long long turned = -x;
        x = y;
        y = turned;
    }
    return slow.SeenAt(x + (slow.image.Width() - 1) / 2, y + slow.image.Height() / 2);
}

std::optional<Seen> SampleFreely(const Slow& slow, long long x, long long y, LONG angle, Colour under) {
    const double theta = angle / 100.0 * 3.141592657 / 180.0;
    const auto sine = static_cast<float>(std::sin(-theta));
    const auto cosine = static_cast<float>(std::cos(-theta));
    const float sx = static_cast<float>(x) * cosine - static_cast<float>(y) * sine;
    const float sy = static_cast<float>(x) * sine + static_cast<float>(y) * cosine;
    const long long column = static_cast<long long>(sx) + (slow.image.Width() - 1) / 2;
    const long long row = static_cast<long long>(sy) + slow.image.Height() / 2;
    std::optional<Seen> seen = slow.SeenAt(column, row);
    if (seen && slow.Blends()) {
        const long long sideColumn = column + (sx > 0 ? 1 : -1);
        const long long sideRow = row + (sy > 0 ? 1 : -1);
        const float fx = std::fabs(sx - std::trunc(sx));
        const float fy = std::fabs(sy - std::trunc(sy));
        const Colour pixel = seen->colour;
        const Colour beside = slow.ColourAt(sideColumn, row, under);
        const Colour above = slow.ColourAt(column, sideRow, under);
        const Colour diagonal = slow.ColourAt(sideColumn, sideRow, under);
        seen->colour = {Mixed(fx, fy, pixel.blue, beside.blue, above.blue, diagonal.blue),
                        Mixed(fx, fy, pixel.green, beside.green, above.green, diagonal.green),
                        Mixed(fx, fy, pixel.red, beside.red, above.red, diagonal.red)};
        seen->isBlended = true;
    }
    return seen;
}

void Store(const Slow& slow, const Seen& seen, int x, int row, Picture& result) {
    const Picture& base = slow.base;
    const int opacity = slow.arguments.opacity;
    const Colour colour = opacity == 255 ? seen.colour : Blend(opacity, base.ColourAt(x, row), seen.colour);
    if (base.Bits() <= 8) {
        result.SetIndex(x, row, base.NearestIndex(colour));
    } else if (base.Bits() == 16 && slow.HaveOneFormat() && opacity == 255 && !seen.isBlended) {
        std::copy_n(&slow.image.bytes[slow.image.PixelAddress(seen.x, seen.y)], 2,
                    &result.bytes[result.PixelAddress(x, row)]);
    } else {
        result.SetColour(x, row, colour);
    }
}

Picture SlowlyPasted(const Slow& slow) {
    const Arguments& a = slow.arguments;
    const LONG angle = std::clamp<LONG>(a.angle, -35999, 35999);
    Picture result = slow.base;
    BITMAPINFOHEADER header = result.Header();
    header.biSizeImage = static_cast<DWORD>(result.RowBytes()) * static_cast<DWORD>(header.biHeight);
    result.SetHeader(header);
    for (int row = 0; row != result.Height(); ++row) {
        for (int column = 0; column != result.Width(); ++column) {
            const long long x = static_cast<long long>(column) - a.x;
            const long long y = row - (result.Height() - 1LL - a.y);
            const auto seen = angle % 9000 == 0 ? SampleExactly(slow, x, y, (angle + 36000) / 9000 % 4)
                                                : SampleFreely(slow, x, y, angle, slow.base.ColourAt(column, row));
            if (seen && a.opacity != 0) {
                Store(slow, *seen, column, row, result);
            }
        }
    }
    return result;
}

// ---------------------------------------------------------------------------------------------------------------------

// Here and there the colour of one pixel.
Colour SprinkleClear(Picture& picture, Random& random) {
    const Colour clear =
        picture.ColourAt(random.Between(0, picture.Width() - 1), random.Between(0, picture.Height() - 1));
    for (int i = 0; i != picture.Width() * picture.Height() / 5 && picture.Bits() > 16; ++i) {
        picture.SetColour(random.Between(0, picture.Width() - 1), random.Between(0, picture.Height() - 1), clear);
    }
    return clear;
}

Arguments RandomArguments(const Picture& base, Random& random) {
    static constexpr int kOpacities[] = {255, 255, 0, 1, 128, 254};
    Arguments arguments;
    arguments.angle = random.Chance(40) ? LONG{9000} * random.Between(-4, 4) : random.Between(-36100, 36100);
    arguments.mirror = random.Between(0, 1);
    arguments.flip = random.Between(0, 1);
    arguments.opacity = kOpacities[random.Between(0, 5)];
    arguments.x = random.Between(-20, base.Width() + 20);
    arguments.y = random.Between(-20, base.Height() + 20);
    arguments.sampling = static_cast<DWORD>(random.Between(0, 2));
    return arguments;
}

void Check(const Source& base, const Source& image, const Source* mask, bool isGreyRamp, const Arguments& arguments) {
    SCOPED_TRACE("angle " + std::to_string(arguments.angle) + " at " + std::to_string(arguments.x) + ", " +
                 std::to_string(arguments.y) + ", opacity " + std::to_string(arguments.opacity) +
                 (arguments.mirror ? ", mirrored" : "") + (arguments.flip ? ", flipped" : "") +
                 (arguments.sampling == 0 ? ", smooth" : "") + (mask != nullptr ? ", masked" : ""));
    const Block result(Paste(base.Handle(), image.Handle(), mask != nullptr ? mask->Handle() : nullptr, arguments));
    ASSERT_NE(result, nullptr) << GetErrorStatus();
    const Slow slow = {base.Content(), image.Content(), mask != nullptr ? &mask->Content() : nullptr, isGreyRamp,
                       arguments};
    EXPECT_TRUE(Holds(result.get(), SlowlyPasted(slow)));
    EXPECT_TRUE(base.Untouched() && image.Untouched() && (mask == nullptr || mask->Untouched()));
}

TEST(PasteImage, FollowsItsRuleAtEveryDepthAndPlace) {
    Random random(90);
    for (int i = 0; i != 2000; ++i) {
        const Layout& baseLayout = RandomLayout(random);
        const Layout& layout = random.Chance(30) ? baseLayout : RandomLayout(random);
        SCOPED_TRACE(std::string(layout.name) + " onto " + baseLayout.name);
        const int width = i % 50 == 0 ? 700 : RandomSide(random);
        const int height = i % 50 == 25 ? 600 : random.Between(1, 30);
        const Source base(
            RandomPicture(baseLayout, i % 50 == 0 ? 600 : RandomSide(random), random.Between(1, 30), random));
        Picture picture = RandomPicture(layout, width, height, random);
        Arguments arguments = RandomArguments(base.Content(), random);
        if (random.Chance(40)) {
            arguments.clear = SprinkleClear(picture, random);
        }
        const Source image(std::move(picture));
        const Source mask(RandomMask(width, height, random));
        Check(base, image, random.Chance(50) ? &mask : nullptr, (layout.acceptedBy & kAccept8Grey) != 0, arguments);
        ASSERT_FALSE(HasFailure());
    }
}

// Pixels numbered by their place: the middle one, 5, comes to lie in the middle of the base.
TEST(PasteImage, TurnsByHand) {
    Picture numbered = BlankPicture(24, 3, 2);
    for (int i = 0; i != 6; ++i) {
        numbered.SetColour(i % 3, i / 3, {static_cast<BYTE>(i + 1), 0, 0});
    }
    const Source image(numbered);
    const Source base(BlankPicture(24, 3, 3));
    const std::pair<LONG, std::vector<int>> kCases[] = {
        {0, {1, 2, 3, 4, 5, 6, 0, 0, 0}}, // rows from the lowest on
        {9000, {0, 4, 1, 0, 5, 2, 0, 6, 3}}, {18000, {0, 0, 0, 6, 5, 4, 3, 2, 1}}, {-9000, {3, 6, 0, 2, 5, 0, 1, 4, 0}},
        {4500, {4, 5, 2, 5, 5, 5, 0, 5, 6}}, // places are cut off toward the middle one
    };
    for (const auto& [angle, rows] : kCases) {
        SCOPED_TRACE(angle);
        const Block block(
            Paste(base.Handle(), image.Handle(), nullptr, {.angle = angle, .x = 1, .y = 1, .sampling = 1}));
        const Picture result{ReadBlock(block.get())};
        for (int i = 0; i != 9; ++i) {
            EXPECT_EQ(result.ColourAt(i % 3, i / 3).blue, rows[static_cast<std::size_t>(i)]) << i;
        }
    }
}

// At the ends of the coordinates the picture is nowhere, or just reaches into the base.
TEST(PasteImage, TakesAnyPlace) {
    Random random(91);
    const Source base(RandomPicture(LayoutNamed("24"), 9, 7, random));
    const Source image(RandomPicture(LayoutNamed("32"), 5, 4, random));
    for (const LONG x : {LONG{INT_MIN}, LONG{-3}, LONG{4}, LONG{12}, LONG{INT_MAX}}) {
        for (const LONG y : {LONG{INT_MIN}, LONG{-3}, LONG{4}, LONG{10}, LONG{INT_MAX}}) {
            for (const LONG angle : {LONG{0}, LONG{9000}, LONG{3100}, LONG{INT_MIN}, LONG{INT_MAX}}) {
                Check(base, image, nullptr, false, {.angle = angle, .x = x, .y = y});
            }
        }
    }
}

TEST(PasteImage, ReportsEachExchangeBeforeThePaste) {
    Random random(92);
    const Source base(RandomPicture(LayoutNamed("24"), 5, 4, random));
    const Source image(RandomPicture(LayoutNamed("8"), 3, 3, random));
    const std::pair<Arguments, std::vector<std::pair<int, int>>> kCases[] = {
        {{}, {{0, 100}}},
        {{.mirror = 1}, {{0, 5}, {6, 100}}},
        {{.angle = 4000, .flip = 1}, {{0, 5}, {6, 100}}},
        {{.mirror = 1, .flip = 1}, {{0, 5}, {6, 10}, {11, 100}}},
    };
    for (const auto& [arguments, stages] : kCases) {
        const auto report = hooks::Watch(
            {}, [&, &given = arguments] { Block(Paste(base.Handle(), image.Handle(), nullptr, given)).reset(); });
        std::vector<std::pair<int, int>> reported;
        for (const hooks::ProgressCall& step : report.progress) {
            if (step.current == step.last) {
                reported.emplace_back(step.fromPercent, step.toPercent);
            }
        }
        EXPECT_EQ(reported, stages);
        EXPECT_EQ(report.progress.size(), (stages.size() - 1) * 3 + 4);
    }
}

// Null pointers, and one picture as base, picture and mask.
TEST(PasteImage, TakesWhatIsThere) {
    Random random(93);
    const Source picture(RandomPicture(LayoutNamed("1"), 33, 9, random));
    Check(picture, picture, &picture, false, {.angle = 700, .x = 20, .y = 3});
    EXPECT_EQ(QV8PasteImage(picture.Handle(), nullptr, 0, 0, 0, 255, nullptr, nullptr, nullptr, 0, 0, 0, 1, 0, 0, 0),
              nullptr);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PICTURE);
    const BYTE clear = 0; // one of three is none
    const ImageSet pasted = {picture.Handle(), nullptr};
    const Block unclear(
        QV8PasteImage(picture.Handle(), &pasted, 0, 0, 0, 255, &clear, nullptr, &clear, 16, 4, 0, 1, 0, 0, 0));
    Picture expected = SlowlyPasted({picture.Content(), picture.Content(), nullptr, false, {.x = 16, .y = 4}});
    EXPECT_TRUE(Holds(unclear.get(), expected));
}

} // namespace
} // namespace test
