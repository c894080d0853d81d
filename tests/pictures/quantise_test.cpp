#include "pictures/quantise.h"

#include <gtest/gtest.h>

#include "pictures/codec.h"
#include "pictures/failure.h"
#include "recorded.h"

namespace {

// The mean difference of a level.
double ErrorOf(const Picture& picture, unsigned colours, bool dither, unsigned depth) {
    const Picture reduced = Quantise(picture, colours, dither);
    const LockedPicture after(reduced);
    const LockedPicture before(picture);
    EXPECT_EQ(after.Header().biBitCount, depth);
    EXPECT_LE(after.TableEntries(), colours);
    double sum = 0;
    for (std::size_t y = 0; y < before.Height(); ++y) {
        for (std::size_t x = 0; x < before.Width(); ++x) {
            const std::size_t bit = x * depth;
            const unsigned index = after.RowFromTop(y)[bit / 8] >> (8 - depth - bit % 8) & ((1U << depth) - 1);
            EXPECT_LT(index, after.TableEntries());
            const RGBQUAD& entry = after.Table()[index];
            const BYTE* const pixel = before.RowFromTop(y) + 3 * x;
            sum += std::abs(entry.rgbBlue - pixel[0]) + std::abs(entry.rgbGreen - pixel[1]) +
                   std::abs(entry.rgbRed - pixel[2]);
        }
    }
    return sum / static_cast<double>(3 * before.Width() * before.Height());
}

TEST(Quantise, FewerColoursFitLess) {
    const Picture picture = ReadRecorded("colour8.png").picture;
    if (!CanQuantise()) {
        EXPECT_THROW(Quantise(picture, 16, false), Failure);
        return;
    }
    EXPECT_LT(ErrorOf(picture, 256, false, 8), 4);
    EXPECT_LT(ErrorOf(picture, 16, false, 4), 36);
    EXPECT_LT(ErrorOf(picture, 2, false, 1), 80);
    EXPECT_GT(ErrorOf(picture, 16, true, 4), ErrorOf(picture, 16, false, 4));
}

// Greys from 0 to 252; a mean is what they leave behind when errors are passed on.
TEST(Quantise, KeepsColoursThatFitAndTheMeanOfThoseThatDoNot) {
    if (!CanQuantise()) {
        return;
    }
    const Picture picture = NewPicture(64, 32, 24);
    const LockedPicture to(picture);
    for (std::size_t i = 0; i < 32 * 192; ++i) {
        to.RowFromTop(i / 192)[i % 192] = static_cast<BYTE>(i % 192 / 3 * 4);
    }
    EXPECT_EQ(ErrorOf(picture, 64, false, 8), 0);
    const Picture reduced = Quantise(picture, 2, true);
    const LockedPicture after(reduced);
    double sum = 0;
    for (std::size_t i = 0; i < 32 * 64; ++i) {
        sum += after.Table()[after.RowFromTop(i / 64)[i % 64 / 8] >> (7 - i % 8) & 1].rgbGreen;
    }
    EXPECT_NEAR(sum / (32 * 64), 126, 4);
}

} // namespace
