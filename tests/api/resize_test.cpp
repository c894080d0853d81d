// Scaling against its definition: every group of source pixels fills its block, pixel by pixel.
#include <algorithm>
#include <string>

#include "api/export_table.h"
#include "qv8com.h"
#include "support/emptied.h"

namespace test {
namespace {

struct Side {
    int oldSize, newSize;
    float factor = static_cast<float>(newSize) / static_cast<float>(oldSize);
    int Place(int position) const {
        return static_cast<int>(position * static_cast<double>(factor) + 0.5);
    }
};

struct Block1D {
    int begin, length, step;
};

Block1D BlockAt(const Side& side, int at) {
    const int begin = side.Place(at);
    int k = 1;
    int end = side.Place(at + 1);
    if (side.factor >= 1) {
        end = std::min(end, side.newSize);
    } else {
        while (end == begin && end < side.newSize) {
            end = side.Place(at + ++k);
        }
    }
    return {begin, std::max(end - begin, 1), k};
}

enum Corner { k00, k10, k01, k11 };

// One channel of a source picture, and the corners of a block.
struct Corners {
    const Picture& source;
    BYTE Colour::*channel;
    int x, y, gw, gh;
    bool enlargesBoth;

    BYTE At(int column, int row) const {
        return source.ColourAt(column, row).*channel;
    }
    BYTE Mean(int x0, int columns, int y0, int rows) const {
        int sum = 0;
        int count = 0;
        for (int row = y0; row < std::min(y0 + rows, source.Height()); ++row) {
            for (int column = x0; column < std::min(x0 + columns, source.Width()); ++column, ++count) {
                sum += At(column, row);
            }
        }
        return static_cast<BYTE>(static_cast<float>(sum) / static_cast<float>(count) + 0.5F);
    }
    BYTE Value(Corner corner) const {
        const bool lastColumn = x == source.Width() - 1;
        const bool lastRow = y == source.Height() - 1;
        const BYTE mean = Mean(x, gw, y, gh);
        switch (corner) {
        case k00:
            return mean;
        case k10:
            return gw >= 2 ? mean : lastColumn ? At(x, y) : Mean(x + 1, 1, y, gh);
        case k01:
            return gh >= 2 ? mean : lastRow ? At(x, y) : Mean(x, gw, y + 1, 1);
        default:
            break;
        }
        if (enlargesBoth) {
            return lastColumn || lastRow ? At(x, y) : At(x + 1, y + 1);
        }
        if (gw >= 2) {
            return gh >= 2 ? mean : Value(k01);
        }
        return gh >= 2 ? Value(k10) : At(std::min(x + 1, source.Width() - 1), std::min(y + 1, source.Height() - 1));
    }
    BYTE Blend(float fx, float fy) const {
        const float p00 = Value(k00), p10 = Value(k10), p01 = Value(k01), p11 = Value(k11);
        const float value = (p11 * fx + p01 * (1 - fx)) * fy + (p10 * fx + p00 * (1 - fx)) * (1 - fy) + 0.5F;
        return static_cast<BYTE>(std::clamp(static_cast<int>(value), 0, 255));
    }
};

void CopyPixel(const Picture& source, int x, int y, Picture& result, int column, int row) {
    if (source.Bits() <= 8) {
        result.SetIndex(column, row, source.Index(x, y));
    } else {
        std::copy_n(&source.bytes[source.PixelAddress(x, y)], source.Bits() / 8,
                    &result.bytes[result.PixelAddress(column, row)]);
    }
}

void SetBlended(const Picture& source, const Colour& colour, Picture& result, int column, int row) {
    if (source.Bits() > 8) {
        result.SetColour(column, row, colour);
        return;
    }
    for (unsigned index = 0; index != 256; ++index) {
        if (source.TableEntry(index)[0] == colour.blue) {
            result.SetIndex(column, row, index);
        }
    }
}

struct Pair {
    Picture image, mask;
};

Pair Resized(const Pair& source, int width, int height, bool smooth) {
    Pair result = {Emptied(source.image, width, height), Emptied(source.mask, width, height)};
    const Side columns = {source.image.Width(), width};
    const Side rows = {source.image.Height(), height};
    const bool enlargesBoth = columns.factor >= 1 && rows.factor >= 1;
    const bool shrinksBoth = columns.factor < 1 && rows.factor < 1;
    Block1D down = {};
    Block1D across = {};
    for (int y = 0; y < rows.oldSize; y += down.step) {
        down = BlockAt(rows, y);
        for (int x = 0; x < columns.oldSize; x += across.step) {
            across = BlockAt(columns, x);
            for (int j = 0; j != down.length && down.begin + j < height; ++j) {
                for (int i = 0; i != across.length && across.begin + i < width; ++i) {
                    const int column = across.begin + i;
                    const int row = down.begin + j;
                    if (!smooth) {
                        CopyPixel(source.image, x, y, result.image, column, row);
                    } else if (!shrinksBoth || (i == 0 && j == 0)) {
                        const float fx = 1.0F / static_cast<float>(across.length) * static_cast<float>(i);
                        const float fy = 1.0F / static_cast<float>(down.length) * static_cast<float>(j);
                        const auto blend = [&](BYTE Colour::*channel) {
                            return Corners{source.image, channel, x, y, across.step, down.step, enlargesBoth}.Blend(
                                shrinksBoth ? 0 : fx, shrinksBoth ? 0 : fy);
                        };
                        SetBlended(source.image, {blend(&Colour::blue), blend(&Colour::green), blend(&Colour::red)},
                                   result.image, column, row);
                    }
                    result.mask.SetIndex(column, row, result.mask.Index(column, row) | source.mask.Index(x, y));
                }
            }
        }
    }
    return result;
}

void Check(const Layout& layout, int width, int height, int newWidth, int newHeight, Random& random) {
    SCOPED_TRACE(std::string(layout.name) + " from " + std::to_string(width) + " x " + std::to_string(height) + " to " +
                 std::to_string(newWidth) + " x " + std::to_string(newHeight));
    const Source picture(RandomPicture(layout, width, height, random));
    const Source mask(RandomMask(width, height, random));
    const bool hasLevels = layout.bits > 8 || (layout.acceptedBy & kAccept8Grey) != 0;
    for (const DWORD smooth : {0U, 1U, 0x100U}) {
        const Pair expected =
            Resized({picture.Content(), mask.Content()}, newWidth, newHeight, smooth != 0 && hasLevels);
        for (const bool withMask : {false, true}) {
            const ImageSet target = {picture.Handle(), withMask ? mask.Handle() : nullptr};
            const ImageSet result = QV8Resize(&target, newWidth, newHeight, smooth, 1, 0, 0, 0);
            const Block image(result.hImage);
            const Block resultMask(result.hMask);
            ASSERT_TRUE(Holds(image.get(), expected.image)) << "smooth " << smooth;
            ASSERT_EQ(resultMask != nullptr, withMask);
            if (withMask) {
                ASSERT_TRUE(Holds(resultMask.get(), expected.mask));
            }
        }
    }
}

TEST(Resize, FillsTheBlockOfEachGroup) {
    constexpr int kSizes[][4] = {{9, 7, 9, 7},   {1, 1, 13, 8},    {1, 1, 1, 1},    {7, 1, 20, 5},   {1, 9, 3, 40},
                                 {40, 1, 7, 1},  {1, 33, 1, 4},    {12, 30, 41, 7}, {30, 12, 7, 41}, {30, 20, 1, 1},
                                 {16, 10, 8, 5}, {16, 10, 32, 20}, {20, 9, 19, 10}, {2, 2, 5, 3}};
    Random random(61);
    for (const Layout& layout : Layouts()) {
        if ((layout.acceptedBy & kAcceptAll) == 0) {
            continue;
        }
        for (const auto& [width, height, newWidth, newHeight] : kSizes) {
            Check(layout, width, height, newWidth, newHeight, random);
        }
        for (int i = 0; i != 12 && !HasFailure(); ++i) {
            Check(layout, RandomSide(random), random.Between(1, 30), random.Between(1, 70), random.Between(1, 60),
                  random);
        }
    }
}

TEST(Resize, RefusesSizesItCannotMake) {
    Random random(62);
    const Source picture(RandomPicture(LayoutNamed("32"), 3, 2, random));
    const Source wrongMask(BlankPicture(1, 2, 3));
    constexpr int kHuge = 0x7FFFFFFF;
    struct Case {
        int width, height;
        bool mask;
        int status;
    };
    const Case kCases[] = {{0, 5, false, QV8_STATUS_PARAMETER},      {5, -1, false, QV8_STATUS_PARAMETER},
                           {0, kHuge, false, QV8_STATUS_PARAMETER},  {kHuge, kHuge, false, QV8_STATUS_MEMORY},
                           {kHuge, 1, false, QV8_STATUS_MEMORY},     {1, kHuge, false, QV8_STATUS_MEMORY},
                           {65536, 65536, false, QV8_STATUS_MEMORY}, {0, 5, true, QV8_STATUS_PICTURE}};
    for (const Case& c : kCases) {
        const ImageSet target = {picture.Handle(), c.mask ? wrongMask.Handle() : nullptr};
        ImageSet result = {picture.Handle(), picture.Handle()};
        EXPECT_EQ(QV8ResizeEx(&target, &result, c.width, c.height, 1, 1, 0, 0, 0), 0);
        EXPECT_TRUE(result.hImage == nullptr && result.hMask == nullptr);
        EXPECT_EQ(GetErrorStatus(), c.status) << c.width << " x " << c.height;
        EXPECT_TRUE(picture.Untouched());
    }
    const ImageSet target = {picture.Handle(), nullptr};
    EXPECT_EQ(QV8ResizeEx(&target, nullptr, 4, 4, 1, 1, 0, 0, 0), 0);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
}

} // namespace
} // namespace test
