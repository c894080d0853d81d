// Rotation against a slow one that works on lists of pixels.
#include <algorithm>
#include <cmath>
#include <functional>
#include <string>

#include "api/export_table.h"
#include "api/slow_blending.h"
#include "qv8com.h"
#include "support/emptied.h"

namespace test {
namespace {

struct Options {
    LONG angle = 0;
    BOOL mirror = 0;
    BOOL flip = 0;
    DWORD smooth = 0;
    Colour background = {0, 0, 0};
    BOOL keepSize = 0;
};

struct Rotated {
    Block image;
    Block mask;
};

Rotated Rotate(HGLOBAL image, HGLOBAL mask, const Options& options) {
    const ImageSet target = {image, mask};
    const Colour& background = options.background;
    const ImageSet result =
        QV8Rotation(&target, options.angle, options.mirror, options.flip, options.smooth, background.red,
                    background.green, background.blue, options.keepSize, 1, 0, 0, 0);
    return {Block(result.hImage), Block(result.hMask)};
}

// --- The slow way ----------------------------------------------------------------------------------------------------

void CopyPixel(const Picture& source, int x, int row, Picture& result, int toX, int toRow) {
    if (source.Bits() <= 8) {
        result.SetIndex(toX, toRow, source.Index(x, row));
        return;
    }
    const BYTE* const from = &source.bytes[source.PixelAddress(x, row)];
    const int bytes = source.Bits() == 16 ? 2 : 3;
    std::copy_n(from, bytes, &result.bytes[result.PixelAddress(toX, toRow)]);
}

bool IsGreyRamp(const Layout& layout) {
    return (layout.acceptedBy & kAccept8Grey) != 0;
}

struct Slow {
    const Layout& layout;
    Picture source; // mirrored and flipped
    Options options;

    bool Has(int x, int row) const {
        return x >= 0 && row >= 0 && x < source.Width() && row < source.Height();
    }
    void Background(Picture& result, int x, int row) const {
        if (source.Bits() <= 8) {
            result.SetIndex(x, row, source.NearestIndex(options.background));
        } else {
            result.SetColour(x, row, options.background);
        }
    }
    Colour BackgroundColour() const {
        if (source.Bits() > 8) {
            return options.background;
        }
        const BYTE* const entry = source.TableEntry(source.NearestIndex(options.background));
        return {entry[0], entry[1], entry[2]};
    }
    Colour At(int x, int row) const {
        return Has(x, row) ? source.ColourAt(x, row) : BackgroundColour();
    }
    void Put(Picture& result, int x, int row, Colour colour) const {
        if (source.Bits() == 8) {
            result.SetIndex(x, row, source.NearestIndex(colour));
        } else {
            result.SetColour(x, row, colour);
        }
    }
    bool Blends() const {
        return options.smooth != 0 && (source.Bits() > 8 || IsGreyRamp(layout));
    }
};

Picture Exchanged(const Picture& source, bool mirror, bool flip) {
    Picture result = Emptied(source, source.Width(), source.Height());
    for (int row = 0; row != source.Height(); ++row) {
        for (int x = 0; x != source.Width(); ++x) {
            CopyPixel(source, x, row, result, mirror ? source.Width() - 1 - x : x,
                      flip ? source.Height() - 1 - row : row);
        }
    }
    return result;
}

// The pixel of the source for each one of a quarter turn, found by turning the picture again and again; the source's
// size is kept by moving it as a whole.
Picture QuarterTurned(const Slow& slow, int quarters, bool isMask) {
    const Picture& source = slow.source;
    const int width = source.Width();
    const int height = source.Height();
    const bool sideways = quarters % 2 != 0;
    const bool keep = slow.options.keepSize != 0 && sideways;
    Picture result = Emptied(source, sideways && !keep ? height : width, sideways && !keep ? width : height);
    const int offsetA = keep ? (height - width) / 2 : 0;
    const int offsetB = keep ? height - width - offsetA : 0;
    for (int row = 0; row != result.Height(); ++row) {
        for (int x = 0; x != result.Width(); ++x) {
            int fromX = x;
            int fromRow = row;
            if (quarters == 1) {
                fromX = row - offsetB;
                fromRow = height - 1 - x - offsetA;
            } else if (quarters == 2) {
                fromX = width - 1 - x;
                fromRow = height - 1 - row;
            } else if (quarters == 3) {
                fromX = width - 1 - row + offsetA;
                fromRow = x + offsetB;
            }
            if (slow.Has(fromX, fromRow)) {
                CopyPixel(source, fromX, fromRow, result, x, row);
            } else if (!isMask) {
                slow.Background(result, x, row);
            }
        }
    }
    return result;
}

Colour BlendedAt(const Slow& slow, float sx, float sy, int x, int row) {
    const int sideX = x + (sx > 0 ? 1 : -1);
    const int sideRow = row + (sy > 0 ? 1 : -1);
    const float fx = std::fabs(sx - std::trunc(sx));
    const float fy = std::fabs(sy - std::trunc(sy));
    const Colour pixel = slow.At(x, row);
    const Colour beside = slow.At(sideX, row);
    const Colour above = slow.At(x, sideRow);
    const Colour diagonal = slow.At(sideX, sideRow);
    return {Mixed(fx, fy, pixel.blue, beside.blue, above.blue, diagonal.blue),
            Mixed(fx, fy, pixel.green, beside.green, above.green, diagonal.green),
            Mixed(fx, fy, pixel.red, beside.red, above.red, diagonal.red)};
}

struct Frame {
    int minX, minY, maxX, maxY;
};

Frame FrameOf(const Slow& slow, float sine, float cosine) {
    const int x0 = -(slow.source.Width() / 2);
    const int y0 = -(slow.source.Height() / 2);
    const int x1 = x0 + slow.source.Width() - 1;
    const int y1 = y0 + slow.source.Height() - 1;
    if (slow.options.keepSize) {
        return {x0, y0, x1, y1};
    }
    float ends[4] = {0, 0, 0, 0};
    for (const auto& [x, y] : {std::pair{x0, y0}, {x0, y1}, {x1, y1}, {x1, y0}}) {
        const float turnedX = static_cast<float>(x) * cosine - static_cast<float>(y) * sine;
        const float turnedY = static_cast<float>(x) * sine + static_cast<float>(y) * cosine;
        ends[0] = std::min(ends[0], turnedX);
        ends[1] = std::min(ends[1], turnedY);
        ends[2] = std::max(ends[2], turnedX);
        ends[3] = std::max(ends[3], turnedY);
    }
    const auto widened = [](float end) { return static_cast<int>(end < 0 ? end - 1 : end + 1); };
    return {widened(ends[0]), widened(ends[1]), widened(ends[2]), widened(ends[3])};
}

Picture FreelyTurned(const Slow& slow, LONG angle, bool isMask) {
    const double theta = angle / 100.0 * 3.141592657 / 180.0;
    const auto sineBack = static_cast<float>(std::sin(-theta));
    const auto cosineBack = static_cast<float>(std::cos(-theta));
    const Frame frame = FrameOf(slow, static_cast<float>(std::sin(theta)), static_cast<float>(std::cos(theta)));
    Picture result = Emptied(slow.source, frame.maxX - frame.minX + 1, frame.maxY - frame.minY + 1);
    for (int y = frame.minY; y <= frame.maxY; ++y) {
        for (int x = frame.minX; x <= frame.maxX; ++x) {
            const float sx = static_cast<float>(x) * cosineBack - static_cast<float>(y) * sineBack;
            const float sy = static_cast<float>(x) * sineBack + static_cast<float>(y) * cosineBack;
            const int fromX = static_cast<int>(sx) + slow.source.Width() / 2;
            const int fromRow = static_cast<int>(sy) + slow.source.Height() / 2;
            const int toX = x - frame.minX;
            const int toRow = y - frame.minY;
            if (!slow.Has(fromX, fromRow)) {
                if (!isMask) {
                    slow.Background(result, toX, toRow);
                }
            } else if (slow.Blends() && !isMask) {
                slow.Put(result, toX, toRow, BlendedAt(slow, sx, sy, fromX, fromRow));
            } else {
                CopyPixel(slow.source, fromX, fromRow, result, toX, toRow);
            }
        }
    }
    return result;
}

Picture SlowlyRotated(const Picture& source, const Layout& layout, const Options& options, bool isMask = false) {
    const Slow slow = {layout, Exchanged(source, options.mirror != 0, options.flip != 0), options};
    const LONG angle = std::clamp<LONG>(options.angle, -35999, 35999);
    return angle % 9000 == 0 ? QuarterTurned(slow, (angle + 36000) / 9000 % 4, isMask)
                             : FreelyTurned(slow, angle, isMask);
}

// ---------------------------------------------------------------------------------------------------------------------

void Check(const Layout& layout, const Source& image, const Source& mask, const Options& options) {
    SCOPED_TRACE("angle " + std::to_string(options.angle) + (options.mirror ? " mirrored" : "") +
                 (options.flip ? " flipped" : "") + (options.smooth ? " smooth" : "") +
                 (options.keepSize ? " size kept" : ""));
    const Rotated result = Rotate(image.Handle(), mask.Handle(), options);
    ASSERT_NE(result.image, nullptr) << GetErrorStatus();
    EXPECT_TRUE(Holds(result.image.get(), SlowlyRotated(image.Content(), layout, options)));
    EXPECT_TRUE(Holds(result.mask.get(), SlowlyRotated(mask.Content(), LayoutNamed("1"), options, true)));
    const Rotated unmasked = Rotate(image.Handle(), nullptr, options);
    EXPECT_EQ(ReadBlock(unmasked.image.get()), ReadBlock(result.image.get()));
    EXPECT_EQ(unmasked.mask, nullptr);
    EXPECT_TRUE(image.Untouched());
    EXPECT_TRUE(mask.Untouched());
}

LONG RandomAngle(Random& random) {
    static constexpr LONG kFew[] = {1, -1, 4500, 8999, 9001, -13500, 17999, -26999, 35999, 36000, 0x7FFFFFFF};
    switch (random.Between(0, 3)) {
    case 0:
        return LONG{9000} * random.Between(-3, 3);
    case 1:
        return kFew[random.Between(0, static_cast<int>(std::size(kFew)) - 1)];
    default:
        return random.Between(-36000, 36000);
    }
}

TEST(Rotation, FollowsItsRuleAtEveryDepth) {
    Random random(80);
    for (const Layout& layout : Layouts()) {
        for (int i = 0; i != 120; ++i) {
            const int width = i == 0 ? 1 : i == 1 ? 700 : RandomSide(random);
            const int height = i == 0 ? 1 : i == 2 ? 500 : RandomSide(random);
            SCOPED_TRACE(std::string(layout.name) + " " + std::to_string(width) + " x " + std::to_string(height));
            const Source image(RandomPicture(layout, width, height, random));
            const Source mask(RandomMask(width, height, random));
            const Options options = {RandomAngle(random),
                                     random.Between(0, 1),
                                     random.Between(0, 1),
                                     static_cast<DWORD>(random.Between(0, 2)),
                                     {random.Byte(), random.Byte(), random.Byte()},
                                     random.Between(0, 1)};
            Check(layout, image, mask, options);
            ASSERT_FALSE(HasFailure());
        }
    }
}

// Pixels numbered by their place, so that a turn in the wrong direction is seen with the bare eye.
TEST(Rotation, QuartersByHand) {
    Picture picture = BlankPicture(24, 3, 2);
    for (int i = 0; i != 6; ++i) {
        picture.SetColour(i % 3, i / 3, {static_cast<BYTE>(i + 1), 0, 0});
    }
    const Source source(picture);
    struct Case {
        LONG angle;
        BOOL keepSize;
        std::vector<int> rows; // blues from the lowest row on
        int width;
    };
    const Case kCases[] = {
        {0, 0, {1, 2, 3, 4, 5, 6}, 3},
        {9000, 0, {4, 1, 5, 2, 6, 3}, 2},
        {18000, 0, {6, 5, 4, 3, 2, 1}, 3},
        {27000, 0, {3, 6, 2, 5, 1, 4}, 2},
        {-9000, 0, {3, 6, 2, 5, 1, 4}, 2},
        {-27000, 0, {4, 1, 5, 2, 6, 3}, 2},
        // One column less than needed: the offsets are 0 and -1.
        {9000, 1, {5, 2, 9, 6, 3, 9}, 3},
        {27000, 1, {9, 3, 6, 9, 2, 5}, 3},
    };
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.angle);
        const Rotated rotated = Rotate(source.Handle(), nullptr, {c.angle, 0, 0, 1, {9, 0, 0}, c.keepSize});
        const Picture result{ReadBlock(rotated.image.get())};
        ASSERT_EQ(result.Width(), c.width);
        ASSERT_EQ(result.Height(), 6 / c.width);
        for (int i = 0; i != 6; ++i) {
            EXPECT_EQ(result.ColourAt(i % c.width, i / c.width).blue, c.rows[static_cast<std::size_t>(i)]) << i;
        }
    }
}

TEST(Rotation, ReportsEachExchangeBeforeTheTurn) {
    Random random(81);
    const Source source(RandomPicture(LayoutNamed("24"), 5, 7, random));
    struct Stage {
        int from, to;
    };
    const std::pair<Options, std::vector<Stage>> kCases[] = {
        {{9000, 0, 0}, {{0, 100}}},
        {{9000, 1, 0}, {{0, 5}, {6, 100}}},
        {{3000, 0, 1}, {{0, 5}, {6, 100}}},
        {{3000, 1, 1}, {{0, 5}, {6, 10}, {11, 100}}},
    };
    for (const auto& [options, stages] : kCases) {
        Block image;
        const hooks::Report report =
            hooks::Watch({}, [&, &given = options] { image = Rotate(source.Handle(), nullptr, given).image; });
        const int turnedRows = Picture{ReadBlock(image.get())}.Height();
        std::size_t next = 0;
        for (std::size_t i = 0; i != stages.size(); ++i) {
            const int rows = i + 1 == stages.size() ? turnedRows : 7;
            for (int row = 0; row != rows; ++row, ++next) {
                ASSERT_LT(next, report.progress.size());
                const hooks::ProgressCall& step = report.progress[next];
                EXPECT_TRUE(step.fromPercent == stages[i].from && step.toPercent == stages[i].to &&
                            step.current == row && step.last == rows - 1);
            }
        }
        EXPECT_EQ(next, report.progress.size());
    }
}

// Pictures of one row that are as wide as can be: turned, they are too high, or their sides leave 32 bits.
TEST(Rotation, ResultsBeyondTheLimitAreShortOfMemory) {
    const Source wide(BlankPicture(1, 3000000, 2));
    for (const LONG angle : {LONG{4500}, LONG{-4501}}) {
        EXPECT_EQ(Rotate(wide.Handle(), nullptr, {angle}).image, nullptr);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_MEMORY);
        EXPECT_NE(Rotate(wide.Handle(), nullptr, {angle, 0, 0, 0, {0, 0, 0}, 1}).image, nullptr);
    }
}

TEST(Rotation, ChecksTheMask) {
    Random random(82);
    const Source image(RandomPicture(LayoutNamed("24"), 5, 7, random));
    const Source badDepth(RandomPicture(LayoutNamed("8"), 5, 7, random));
    const Source badSize(RandomMask(7, 5, random));
    for (const Source* const mask : {&badDepth, &badSize}) {
        EXPECT_EQ(Rotate(image.Handle(), mask->Handle(), {3000}).image, nullptr);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PICTURE);
    }
    // Both are locked before either is looked at.
    Picture odd = image.Content();
    odd.bytes.resize(60);
    const Source cutShort(odd);
    const Block empty = MakeBlock({});
    EXPECT_EQ(Rotate(cutShort.Handle(), empty.get(), {3000}).image, nullptr);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_MEMORY);
    EXPECT_TRUE(image.Untouched());
}

TEST(RotationEx, NeedsAPlaceForItsResult) {
    Random random(83);
    const Source image(RandomPicture(LayoutNamed("24"), 5, 7, random));
    const ImageSet target = {image.Handle(), nullptr};
    EXPECT_EQ(QV8RotationEx(&target, nullptr, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0), 0);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
}

} // namespace
} // namespace test
