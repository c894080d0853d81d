// What the geometry files offer each other: sines and cosines, spans, exchange in place.
#include <algorithm>
#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "geometry/mirror_flip.h"
#include "geometry/rotation_kernels.h"
#include "simd/target.h"
#include "support/area.h"
#include "support/picture.h"

namespace test {
namespace {

// Sine of an angle below a quarter turn by its series, without the mathematics of the system.
double SeriesSine(double x) {
    double term = x;
    double sum = x;
    for (int n = 2; n < 30; n += 2) {
        term *= -x * x / (n * (n + 1));
        sum += term;
    }
    return sum;
}

// The same numbers with every compiler and system.
TEST(Turn, SinesAndCosinesOfAllAnglesAreThoseOfTheSeries) {
    for (int angle = -qv8::kMaxAngle; angle <= qv8::kMaxAngle; ++angle) {
        const double theta = (angle / 100.0) * 3.141592657 / 180.0;
        const qv8::Turn turn = qv8::TurnBy(angle);
        // Near a multiple of the quarter turn the rest is small; pi in two parts keeps its digits.
        constexpr double kHalfPiHigh = 1.57079632679489661923;
        constexpr double kHalfPiLow = 6.123233995736766e-17;
        const int quarter = static_cast<int>(std::floor(theta / kHalfPiHigh + 0.5));
        const double rest = (theta - quarter * kHalfPiHigh) - quarter * kHalfPiLow;
        const double s = SeriesSine(rest);
        const double half = SeriesSine(rest / 2);
        const double c = 1 - 2 * half * half;
        const double sines[4] = {s, c, -s, -c};
        const auto sine = static_cast<float>(sines[quarter & 3]);
        const auto cosine = static_cast<float>(sines[(quarter + 1) & 3]);
        ASSERT_TRUE(turn.forth.rowByX == sine && turn.forth.columnByY == -sine && turn.forth.rowByY == cosine &&
                    turn.back.rowByX == -sine && turn.back.columnByX == cosine)
            << angle;
    }
}

TEST(SpanInside, HoldsExactlyThePlacesInside) {
    Random random(70);
    for (int i = 0; i != 3000; ++i) {
        const int y = random.Between(-200, 200);
        const auto lines = qv8::SourceLinesOf(qv8::TurnBy(random.Between(-35999, 35999)).back, y);
        const qv8::Span within = {random.Between(-200, 0), random.Between(0, 200)};
        const int first = random.Between(-150, 0);
        const int count = random.Between(1, 150);
        qv8::Span guess = {random.Between(-300, 300), random.Between(-300, 300)};
        for (const qv8::SourceLine& line : {lines.column, lines.row}) {
            const qv8::Span span = qv8::SpanInside(line, first, count, within, guess);
            for (int x = within.begin; x != within.end; ++x) {
                const int place = static_cast<int>(line.At(x));
                ASSERT_EQ(span.begin <= x && x < span.end, first <= place && place < first + count) << i << ", " << x;
            }
        }
    }
}

// Eight lanes find and blend as four do.
TEST(RotationKernels, AreTheSameOnBothTargets) {
    Random random(71);
    for (int i = 0; i != 200; ++i) {
        const auto lines =
            qv8::SourceLinesOf(qv8::TurnBy(random.Between(-35999, 35999)).back, random.Between(-5000, 5000));
        const qv8::Directions directions = {qv8::Direction::Of(random.Between(1, 9000), random.Chance(50)),
                                            qv8::Direction::Of(random.Between(1, 9000), random.Chance(50))};
        const int x = random.Between(-5000, 5000);
        const int count = random.Between(1, qv8::kPlaces);
        BYTE corners[4][qv8::kPlaces];
        for (auto& corner : corners) {
            std::generate(std::begin(corner), std::end(corner), [&] { return random.Byte(); });
        }
        qv8::Places places[2];
        BYTE blended[2][qv8::kPlaces];
        for (const bool wide : {false, true}) {
            qv8::UseTarget(wide ? qv8::BestTarget() : qv8::Target::kBaseline);
            const qv8::RotationKernels& kernels = qv8::TheRotationKernels();
            kernels.findNeighbours(lines, directions, x, count, places[wide]);
            kernels.blend(places[wide], corners[0], corners[1], corners[2], corners[3], count, blended[wide]);
        }
        for (int k = 0; k != count; ++k) {
            ASSERT_TRUE(places[0].columns[k] == places[1].columns[k] && places[0].rows[k] == places[1].rows[k] &&
                        places[0].nextColumns[k] == places[1].nextColumns[k] &&
                        places[0].nextRows[k] == places[1].nextRows[k] &&
                        places[0].columnWeights[k] == places[1].columnWeights[k] &&
                        places[0].rowWeights[k] == places[1].rowWeights[k] && blended[0][k] == blended[1][k]);
        }
    }
}

// --- Exchange in place -----------------------------------------------------------------------------------------------

qv8::NewPicture CopyOf(const Source& source) {
    qv8::Picture picture;
    EXPECT_TRUE(qv8::OpenPicture(source.Handle(), qv8::kAcceptAll, picture));
    return qv8::DuplicateDib(picture.view, picture.view.width, picture.view.height, qv8::InitialPixels::kCopied);
}

// Every bit of a pixel, the fourth byte included.
Bytes PixelAt(const Picture& picture, int x, int row) {
    if (picture.Bits() < 8) {
        return {static_cast<BYTE>(picture.Index(x, row))};
    }
    const BYTE* const pixel = &picture.bytes[picture.PixelAddress(x, row)];
    return {pixel, pixel + picture.Bits() / 8};
}

void ExpectExchanged(const Picture& before, const Picture& after, bool mirrored) {
    const int width = before.Width();
    const int height = before.Height();
    for (int row = 0; row != height; ++row) {
        for (int x = 0; x != width; ++x) {
            const Bytes pixel = mirrored ? PixelAt(after, width - 1 - x, row) : PixelAt(after, x, height - 1 - row);
            ASSERT_EQ(pixel, PixelAt(before, x, row)) << x << ", " << row;
        }
    }
}

TEST(MirrorAndFlip, ExchangeWholePixelsInPlace) {
    Random random(72);
    for (const Layout& layout : Layouts()) {
        for (const int width : {1, 2, 33, 1500}) {
            const int height = random.Between(1, 6);
            const Source source(RandomPicture(layout, width, height, random));
            const Source maskSource(RandomMask(width, height, random));
            for (const bool mirror : {true, false}) {
                SCOPED_TRACE(std::string(layout.name) + (mirror ? " mirrored " : " flipped ") + std::to_string(width));
                qv8::NewPicture picture = CopyOf(source);
                qv8::NewPicture mask = CopyOf(maskSource);
                const auto exchange = mirror ? qv8::MirrorDib : qv8::FlipDib;
                ASSERT_TRUE(exchange(picture, &mask, qv8::Progress{1, 0, 5}));
                ExpectExchanged(source.Content(), Picture{ReadBlock(picture.memory.block.get())}, mirror);
                ExpectExchanged(maskSource.Content(), Picture{ReadBlock(mask.memory.block.get())}, mirror);
                qv8::NewPicture alone = CopyOf(source);
                ASSERT_TRUE(exchange(alone, nullptr, qv8::Progress{1, 0, 5}));
                EXPECT_EQ(ReadBlock(alone.memory.block.get()), ReadBlock(picture.memory.block.get()));
            }
        }
    }
}

int QV8API StopAtThird(int, void* calls) {
    return ++*static_cast<int*>(calls) < 3 ? 1 : 0;
}

TEST(MirrorAndFlip, StopWhenAskedTo) {
    Random random(73);
    const Source source(RandomPicture(LayoutNamed("24"), 4, 6, random));
    for (const auto exchange : {qv8::MirrorDib, qv8::FlipDib}) {
        int calls = 0;
        const DWORD owner = AddProgressOwner(StopAtThird, &calls);
        qv8::NewPicture picture = CopyOf(source);
        EXPECT_FALSE(exchange(picture, nullptr, qv8::Progress{owner, 0, 5}));
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_CANCELLED);
        EXPECT_EQ(calls, 3);
        RemoveProgressOwner(owner);
    }
}

} // namespace
} // namespace test
