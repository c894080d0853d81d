#include "pictures/quantise.h"

#include <gtest/gtest.h>

#include "pictures/failure.h"
#include "recorded.h"

namespace {

double ErrorOf(const Picture& picture, unsigned colours, unsigned depth) {
    const Picture reduced = Quantise(picture, colours, false);
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
    const double many = ErrorOf(picture, 256, 8);
    const double some = ErrorOf(picture, 16, 4);
    const double few = ErrorOf(picture, 4, 4);
    EXPECT_LT(many, 8);
    EXPECT_LT(many, some);
    EXPECT_LT(some, few);
    EXPECT_LT(few, 70);
}

} // namespace
