// Colour reduction against the slow, obvious way, and what its rules lead to.
#include <set>
#include <string>

#include "api/export_table.h"
#include "api/slow_reduction.h"
#include "qv8com.h"

namespace test {
namespace {

HGLOBAL Reduce(HGLOBAL image, const ReductionCase& reduction) {
    return QV8ConvertColor(image, static_cast<DWORD>(reduction.depth), reduction.fixedPalette, reduction.dither,
                           reduction.threshold, 1, 0, 0, 0);
}

void Check(const Picture& picture, const ReductionCase& reduction) {
    SCOPED_TRACE(std::to_string(picture.Bits()) + " bits to " + std::to_string(reduction.depth) +
                 (reduction.fixedPalette ? ", fixed" : "") + (reduction.dither ? ", dithered" : ""));
    const Source source(picture);
    const Block result(Reduce(source.Handle(), reduction));
    ASSERT_NE(result, nullptr) << GetErrorStatus();
    EXPECT_TRUE(Holds(result.get(), SlowlyReduced(picture, reduction)));
    EXPECT_TRUE(source.Untouched());
}

bool IsReduction(int from, int depth) {
    return depth == QV8_DEPTH_GREY ? from >= 16 : depth < from;
}

// Soft ramps with some noise: the colours crowd as they do in photographs.
Picture SoftPicture(const Layout& layout, int width, int height, Random& random) {
    Picture picture = RandomPicture(layout, width, height, random);
    for (int row = 0; row != height; ++row) {
        for (int x = 0; x != width; ++x) {
            const auto level = [&](int slope) {
                return static_cast<BYTE>((x * slope + row * 3 + random.Byte() % 16) / 2);
            };
            if (layout.bits > 8) {
                picture.SetColour(x, row, {level(1), level(2), level(3)});
            }
        }
    }
    return picture;
}

TEST(Reduction, FollowsTheSlowWayAtEveryDepth) {
    Random random(40);
    for (const Layout& layout : Layouts()) {
        for (const int depth : {1, 4, 8, int{QV8_DEPTH_GREY}}) {
            for (int i = 0; IsReduction(layout.bits, depth) && i != 8; ++i) {
                const int width = RandomSide(random);
                const int height = random.Between(1, 20);
                const Picture picture =
                    i < 4 ? RandomPicture(layout, width, height, random) : SoftPicture(layout, width, height, random);
                Check(picture, {depth, i % 2 == 1, i % 4 >= 2, random.Byte()});
                ASSERT_FALSE(HasFailure());
            }
        }
    }
}

// Enough pixels that every box is cut out of many, in a picture with a wide row, and the extreme errors of pure
// colours.
TEST(Reduction, FollowsTheSlowWayInLargerPictures) {
    Random random(41);
    Picture soft = SoftPicture(LayoutNamed("24"), 211, 97, random);
    Picture pure = RandomPicture(LayoutNamed("24"), 130, 40, random);
    for (int row = 0; row != pure.Height(); ++row) {
        for (int x = 0; x != pure.Width(); ++x) {
            const auto end = [&] { return static_cast<BYTE>(random.Chance(50) ? 255 : 0); };
            pure.SetColour(x, row, {end(), end(), end()});
        }
    }
    for (const Picture& picture : {soft, pure}) {
        for (const int depth : {1, 4, 8}) {
            for (const bool fixedPalette : {false, true}) {
                for (const bool dither : {false, true}) {
                    Check(picture, {depth, fixedPalette, dither, 128});
                }
            }
        }
    }
}

// Greys take a way of their own to black and white.
TEST(Reduction, DithersGreyTables) {
    Random random(42);
    for (const char* const name : {"8-grey", "8-shuffled"}) {
        const Picture picture = RandomPicture(LayoutNamed(name), 67, 33, random);
        for (const int threshold : {0, 1, 128, 255}) {
            Check(picture, {1, false, true, static_cast<BYTE>(threshold)});
        }
    }
}

TEST(Reduction, ThresholdsAtBothEnds) {
    Picture picture = BlankPicture(24, 3, 1);
    picture.SetColour(1, 0, {255, 255, 254});
    picture.SetColour(2, 0, {255, 255, 255});
    const Source source(picture);
    for (const auto& [threshold, bits] : {std::pair<BYTE, int>{0, 0xE0}, {255, 0x20}, {254, 0x60}}) {
        const Block result(Reduce(source.Handle(), {1, false, false, threshold}));
        const Picture reduced{ReadBlock(result.get())};
        EXPECT_EQ(reduced.bytes[reduced.PixelOffset()], bits) << int{threshold};
    }
}

TEST(Reduction, FixedLevelsAreTheNearestOfSix) {
    Picture picture = BlankPicture(24, 2, 1);
    picture.SetColour(0, 0, {1, 1, 1});
    picture.SetColour(1, 0, {26, 26, 26});
    const Block result(Reduce(Source(picture).Handle(), {8, true, false, 0}));
    const Picture reduced{ReadBlock(result.get())};
    EXPECT_EQ(reduced.Header().biClrUsed, 216U);
    EXPECT_EQ(reduced.Index(0, 0), 0U);
    EXPECT_EQ(reduced.Index(1, 0), 43U);
}

TEST(Reduction, PopularColoursComeFirst) {
    Picture picture = BlankPicture(8, 6, 1);
    const Colour colours[] = {{10, 20, 30}, {100, 200, 250}, {255, 0, 70}};
    for (std::size_t i = 0; i != 3; ++i) {
        BYTE* const entry = picture.TableEntry(i + 5);
        entry[0] = colours[i].blue;
        entry[1] = colours[i].green;
        entry[2] = colours[i].red;
    }
    const unsigned indices[] = {5, 6, 6, 6, 7, 7};
    for (int x = 0; x != 6; ++x) {
        picture.SetIndex(x, 0, indices[x]);
    }
    const Block result(Reduce(Source(picture).Handle(), {4, false, false, 0}));
    const Picture reduced{ReadBlock(result.get())};
    const Colour expected[] = {colours[1], colours[2], colours[0], {0, 0, 0}, {0, 0, 0}};
    for (std::size_t i = 0; i != 5; ++i) {
        const BYTE* const entry = reduced.TableEntry(i);
        EXPECT_EQ((Colour{entry[0], entry[1], entry[2]}), expected[i]) << i;
    }
    EXPECT_EQ(reduced.ColourAt(0, 0), colours[0]);
    EXPECT_EQ(reduced.ColourAt(5, 0), colours[2]);
}

// Each phase has its own slice of the way.
TEST(Reduction, ReportsEveryPhase) {
    Random random(43);
    struct Phases {
        const char* layout;
        ReductionCase reduction;
        std::vector<std::pair<int, int>> slices; // from, to
        std::size_t calls;
    };
    const Phases kPhases[] = {
        {"24", {8, false, true, 0}, {{0, 30}, {30, 60}, {60, 70}, {70, 100}}, 7 + 255 + 256 + 7},
        {"16", {4, false, false, 0}, {{0, 30}, {30, 60}, {60, 70}, {70, 100}}, 7 + 15 + 16 + 7},
        {"8", {4, false, true, 0}, {{0, 10}, {10, 100}}, 7 + 7},
        {"32", {8, true, true, 0}, {{0, 100}}, 7},
        {"24", {QV8_DEPTH_GREY, false, false, 0}, {{0, 100}}, 7},
    };
    for (const Phases& phases : kPhases) {
        const Source source(RandomPicture(LayoutNamed(phases.layout), 9, 7, random));
        HGLOBAL result = nullptr;
        const hooks::Report report = hooks::Watch({}, [&] { result = Reduce(source.Handle(), phases.reduction); });
        const Block block(result);
        EXPECT_EQ(report.progress.size(), phases.calls);
        std::vector<std::pair<int, int>> slices;
        for (const hooks::ProgressCall& step : report.progress) {
            const std::pair<int, int> slice = {step.fromPercent, step.toPercent};
            if (slices.empty() || slices.back() != slice) {
                slices.push_back(slice);
            }
            EXPECT_TRUE(step.current >= 0 && step.current <= step.last);
        }
        EXPECT_EQ(slices, phases.slices);
    }
}

// Cancelling and failing memory in every phase of the long reductions: the tables of all exports try the short ones.
TEST(Reduction, LeavesNothingBehindWhereverItStops) {
    Random random(44);
    const Source source(RandomPicture(LayoutNamed("24"), 9, 5, random));
    const Source palette(RandomPicture(LayoutNamed("8"), 9, 5, random));
    const std::pair<const Source*, ReductionCase> kCases[] = {
        {&source, {8, false, true, 0}}, {&source, {4, false, true, 0}},  {&source, {8, true, true, 0}},
        {&source, {1, true, true, 99}}, {&palette, {4, false, true, 0}}, {&palette, {1, false, true, 9}},
    };
    const std::pair<hooks::Kind, int> kFailures[] = {{hooks::Kind::kAllocation, QV8_STATUS_MEMORY},
                                                     {hooks::Kind::kLock, QV8_STATUS_MEMORY},
                                                     {hooks::Kind::kProgress, QV8_STATUS_CANCELLED}};
    for (const auto& [picture, reduction] : kCases) {
        for (const auto& [kind, status] : kFailures) {
            int failures = 0;
            for (bool failed = true; failed;) {
                HGLOBAL result = nullptr;
                const hooks::Report report =
                    hooks::Watch({kind, failures + 1, false},
                                 [&, chosen = picture, how = reduction] { result = Reduce(chosen->Handle(), how); });
                const Block block(result);
                failed = report.failed;
                failures += failed ? 1 : 0;
                ASSERT_EQ(result == nullptr, failed);
                ASSERT_EQ(GetErrorStatus(), failed ? status : QV8_STATUS_SUCCESS);
                ASSERT_EQ(report.blocks.size(), failed ? 0U : 1U);
                ASSERT_EQ(report.locks, 0);
            }
            EXPECT_GE(failures, kind == hooks::Kind::kProgress ? 5 : 2);
            EXPECT_TRUE(picture->Untouched());
        }
    }
}

} // namespace
} // namespace test
