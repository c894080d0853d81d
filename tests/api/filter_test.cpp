// Custom filter, relief, softening and sharpening against their definitions, pixel by pixel.
#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "api/slow_filter.h"
#include "qv8com.h"

namespace test {
namespace {

using Kernel = std::array<LONG, 81>;

BYTE Clamp(double value) {
    return static_cast<BYTE>(std::clamp(value, 0.0, 255.0));
}

Colour Convolved(const Picture& source, int x, int row, const Kernel& kernel, int divisor, int offset) {
    return EachChannel([&](BYTE Colour::*channel) {
        std::uint32_t sum = 0;
        for (int r = 0; r != 9; ++r) {
            for (int c = 0; c != 9; ++c) {
                const LONG weight = kernel[static_cast<std::size_t>(9 * r + c)];
                sum += static_cast<std::uint32_t>(weight) * (Repeated(source, x + c - 4, row + 4 - r).*channel);
            }
        }
        return Clamp(static_cast<std::int32_t>(sum) / divisor + offset);
    });
}

Kernel RandomKernel(Random& random) {
    Kernel kernel = {};
    const auto most = static_cast<int>((1U << random.Between(0, 31)) - 1);
    for (LONG& weight : kernel) {
        if (!random.Chance(random.Between(1, 4))) {
            weight = static_cast<LONG>(random.Between(-most, most));
        }
    }
    if (random.Chance(3)) { // a mean, whose sums go up to 255 * 255
        std::transform(kernel.begin(), kernel.end(), kernel.begin(), [](LONG w) { return (w & 3) + (w & 1); });
    }
    return kernel;
}

TEST(CustomFilter, IsTheSumOfItsNeighbours) {
    Random random(50);
    ForEachFilterScene(random, 12, [&](const Scene& scene) {
        const Kernel kernel = RandomKernel(random);
        const int divisor = random.Chance(3) ? 1 : random.Between(1, 255);
        const int offset = random.Between(0, 255);
        const BOOL on[3] = {!random.Chance(4), !random.Chance(4), !random.Chance(4)};
        CheckFilter(
            scene,
            [&](const Call& call) {
                return CallWithArea(QV8CustomFilter, call, kernel.data(), static_cast<DWORD>(0xABCD00 | divisor),
                                    static_cast<DWORD>(offset | 0xF00), on[0], on[1], on[2]);
            },
            [&](const Picture& source, int x, int row) {
                const Colour old = source.ColourAt(x, row);
                const Colour all = Convolved(source, x, row, kernel, divisor, offset);
                const bool grey = source.Bits() == 8;
                return Colour{grey || on[2] ? all.blue : old.blue, on[1] ? all.green : old.green,
                              on[0] ? all.red : old.red};
            });
    });
}

// Every sum of a narrow kernel over every divisor: truncation toward zero, exactly.
TEST(CustomFilter, DividesEverySumExactly) {
    Picture ramp = BlankPicture(24, 256, 1);
    for (int x = 0; x != 256; ++x) {
        ramp.SetColour(x, 0, {static_cast<BYTE>(x), static_cast<BYTE>(255 - x), 0});
    }
    const Scene scene = {Source(ramp), Source(BlankPicture(1, 1, 1)), Source(ramp), {}};
    for (const LONG scale : {1, -1, 256, -100}) {
        for (int divisor = 1; divisor <= 255; ++divisor) {
            Kernel kernel = {};
            kernel[40] = scale;
            CheckFilter(
                scene,
                [&](const Call& call) {
                    return CallWithArea(QV8CustomFilter, call, kernel.data(), static_cast<DWORD>(divisor), 100U, 1, 1,
                                        1);
                },
                [&](const Picture& source, int x, int row) {
                    const Colour old = source.ColourAt(x, row);
                    return EachChannel([&](BYTE Colour::*c) { return Clamp(old.*c * scale / divisor + 100); });
                });
            ASSERT_FALSE(HasFailure()) << scale << " / " << divisor;
        }
    }
}

TEST(CustomFilter, RefusesAMissingKernelAndADivisorOfZeroBeforeItsArea) {
    Random random(51);
    const Scene scene = RandomScene(LayoutNamed("24"), AreaForm::kWhole, 5, 5, random);
    Call call = scene.AsCall();
    call.area.type = QV8_AREA_MASK; // without a mask
    call.target.hMask = nullptr;
    const Kernel kernel = {};
    EXPECT_EQ(CallWithArea(QV8CustomFilter, call, nullptr, 1U, 0U, 1, 1, 1), nullptr);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
    EXPECT_EQ(CallWithArea(QV8CustomFilter, call, kernel.data(), 0x100U, 0U, 1, 1, 1), nullptr);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
    EXPECT_EQ(CallWithArea(QV8Emboss, call, 8U, 1U, 0U), nullptr);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PARAMETER);
    EXPECT_EQ(CallWithArea(QV8Emboss, call, 7U, 1U, 0U), nullptr);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PICTURE);
}

// The direction's side counts positive; between the axes the kernel stands on its corner.
TEST(Emboss, LightsOneSide) {
    static constexpr int kTowards[8][2] = {{1, 0}, {1, -1}, {0, -1}, {-1, -1}, {-1, 0}, {-1, 1}, {0, 1}, {1, 1}};
    Random random(52);
    ForEachFilterScene(random, 12, [&](const Scene& scene) {
        const int direction = random.Between(0, 7);
        const int depth = random.Between(0, 7);
        const int base = random.Between(0, 255);
        const int divisor = 6 - std::clamp(depth, 1, 5);
        CheckFilter(
            scene,
            [&](const Call& call) {
                return CallWithArea(QV8Emboss, call, static_cast<DWORD>(direction), static_cast<DWORD>(depth),
                                    static_cast<DWORD>(base));
            },
            [&](const Picture& source, int x, int row) {
                return EachChannel([&](BYTE Colour::*channel) {
                    const int* const towards = kTowards[direction];
                    int sum = 0;
                    for (int dy = -1; dy <= 1; ++dy) {
                        for (int dx = -1; dx <= 1; ++dx) {
                            const int along = dx * towards[0] + dy * towards[1];
                            const int weight = towards[0] != 0 && towards[1] != 0 ? along : 2 * along;
                            sum += weight * (Repeated(source, x + dx, row + dy).*channel);
                        }
                    }
                    return Clamp(sum / divisor + base);
                });
            });
    });
}

struct Box {
    int left, right, low, high;
    int Count() const {
        return (right - left + 1) * (high - low + 1);
    }
};

Box BoxAround(const Picture& source, int x, int row, int radius) {
    return {std::max(x - radius, 0), std::min(x + radius, source.Width() - 1), std::max(row - radius, 0),
            std::min(row + radius, source.Height() - 1)};
}

template <class Value>
int SumOf(const Box& box, Value value) {
    int sum = 0;
    for (int row = box.low; row <= box.high; ++row) {
        for (int x = box.left; x <= box.right; ++x) {
            sum += value(x, row);
        }
    }
    return sum;
}

void CheckShade(const Scene& scene, int radius) {
    SCOPED_TRACE("radius " + std::to_string(radius));
    CheckFilter(
        scene, [&](const Call& call) { return CallWithArea(QV8Shade, call, static_cast<DWORD>(radius)); },
        [&](const Picture& source, int x, int row) {
            const Box box = BoxAround(source, x, row, std::clamp(radius, 1, 20));
            return EachChannel([&](BYTE Colour::*channel) {
                return SumOf(box, [&](int u, int v) { return source.ColourAt(u, v).*channel; }) / box.Count();
            });
        });
}

TEST(Shade, IsTheMeanOfItsBox) {
    Random random(53);
    ForEachFilterScene(random, 3, [&](const Scene& scene) { CheckShade(scene, random.Between(0, 22)); });
}

// Large enough for whole boxes, with rows that the area leaves out; white makes the largest sums.
TEST(Shade, SlidesOverWholeBoxes) {
    Random random(54);
    for (const char* const layout : {"8-grey", "24", "32"}) {
        Scene scene = RandomScene(LayoutNamed(layout), AreaForm::kMask, 47, 50, random);
        for (const int radius : {1, 2, 7, 8, 20}) {
            CheckShade(scene, radius);
        }
        scene = RandomScene(LayoutNamed(layout), AreaForm::kWhole, 44, 24, random);
        Picture white = scene.picture.Content();
        std::fill(white.bytes.begin() + static_cast<std::ptrdiff_t>(white.PixelOffset()), white.bytes.end(), 255);
        scene.picture = Source(white);
        for (int radius = 1; radius <= 20; ++radius) {
            CheckShade(scene, radius);
        }
    }
}

Colour Sharpened(const Picture& source, int x, int row, float strength) {
    const Box box = BoxAround(source, x, row, 1);
    const int centre = LuminanceAt(source, x, row);
    const int sum = SumOf(box, [&](int u, int v) { return LuminanceAt(source, u, v); });
    const float y = static_cast<float>(centre) + strength * static_cast<float>(box.Count() * centre - sum);
    if (source.Bits() == 8) {
        return {Clamp(y), 0, 0};
    }
    const Colour colour = source.ColourAt(x, row);
    const auto red = static_cast<float>(colour.red);
    const auto green = static_cast<float>(colour.green);
    const auto blue = static_cast<float>(colour.blue);
    const float cb = red * -0.16874F + green * -0.33126F + blue * 0.5F;
    const float cr = red * 0.5F + green * -0.41869F + blue * -0.08131F;
    return {Clamp(y + 1.772F * cb), Clamp(y - 0.34414F * cb - 0.71414F * cr), Clamp(y + 1.402F * cr)};
}

TEST(Sharpen, PushesLuminanceAwayFromItsBox) {
    Random random(55);
    ForEachFilterScene(random, 20, [&](const Scene& scene) {
        const int strength = random.Chance(4) ? random.Between(100, 255) : random.Between(0, 100);
        const auto factor = static_cast<float>(std::min(strength, 100) * 3.0 / 100.0);
        CheckFilter(
            scene, [&](const Call& call) { return CallWithArea(QV8Sharp, call, static_cast<DWORD>(0x700 | strength)); },
            [&](const Picture& source, int x, int row) { return Sharpened(source, x, row, factor); });
    });
}

} // namespace
} // namespace test
