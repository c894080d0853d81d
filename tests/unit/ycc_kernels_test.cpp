// Luminance and colour differences over every colour there is, on every target, against the definition: products from
// tables of single-precision floats, summed from left to right, truncated.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "pixels/luminance.h"
#include "simd/target.h"
#include "tone/ycc_kernels.h"

namespace {

using namespace qv8;

struct Tables {
    float product[9][256];
    Tables() {
        constexpr float kFactors[9] = {0.299F, 0.587F, 0.114F, 0.5F, -0.41869F, -0.08131F, -0.16874F, -0.33126F, 0.5F};
        for (int k = 0; k != 9; ++k) {
            for (int i = 0; i != 256; ++i) {
                product[k][i] = static_cast<float>(i) * kFactors[k];
            }
        }
    }
    int Sum(int first, int r, int g, int b, float offset) const {
        float sum = product[first][r] + product[first + 1][g];
        sum = sum + product[first + 2][b];
        return static_cast<int>(std::trunc(sum + offset));
    }
};
const Tables kTables;

struct Ycc {
    int y;
    int cr;
    int cb;
};

Ycc Forward(int r, int g, int b, float offset) {
    return {kTables.Sum(0, r, g, b, 0.0F), kTables.Sum(3, r, g, b, offset), kTables.Sum(6, r, g, b, offset)};
}

BYTE Byte(float value) {
    return static_cast<BYTE>(std::clamp(static_cast<double>(std::trunc(value)), 0.0, 255.0));
}

struct Rgb {
    BYTE r;
    BYTE g;
    BYTE b;
};

Rgb Back(float y, float cr, float cb) {
    const float greenFirst = y - 0.34414F * cb;
    return {Byte(y + 1.402F * cr), Byte(greenFirst - 0.71414F * cr), Byte(y + 1.772F * cb)};
}

// Runs `kernel` over all colours, one red and green at a time, and compares each with `expected`.
template <class Kernel, class Expected>
void CompareAllColours(Kernel kernel, Expected expected) {
    BYTE blue[256];
    BYTE green[256];
    BYTE red[256];
    for (int r = 0; r != 256; ++r) {
        for (int g = 0; g != 256; ++g) {
            for (int b = 0; b != 256; ++b) {
                blue[b] = static_cast<BYTE>(b);
                green[b] = static_cast<BYTE>(g);
                red[b] = static_cast<BYTE>(r);
            }
            kernel(PlanarRow{blue, green, red}, 256);
            for (int b = 0; b != 256; ++b) {
                const Rgb e = expected(r, g, b);
                if (e.r != red[b] || e.g != green[b] || e.b != blue[b]) {
                    FAIL() << "red " << r << " green " << g << " blue " << b << " became " << int{red[b]} << ' '
                           << int{green[b]} << ' ' << int{blue[b]} << ", not " << int{e.r} << ' ' << int{e.g} << ' '
                           << int{e.b};
                }
            }
        }
    }
}

class AllColours : public testing::TestWithParam<Target> {
protected:
    void SetUp() override {
        UseTarget(GetParam());
        if (CurrentTarget() != GetParam()) {
            GTEST_SKIP() << "this processor has no such target";
        }
    }
    void TearDown() override {
        UseTarget(BestTarget());
    }
};

TEST_P(AllColours, ForwardComponentsAreBytes) {
    for (int r = 0; r != 256; ++r) {
        for (int g = 0; g != 256; ++g) {
            for (int b = 0; b != 256; ++b) {
                const Ycc c = Forward(r, g, b, 128.0F);
                ASSERT_TRUE(c.y >= 0 && c.y <= 255 && c.cr >= 0 && c.cr <= 255 && c.cb >= 0 && c.cb <= 255);
            }
        }
    }
}

TEST_P(AllColours, ShiftsOfComponents) {
    // A plain round trip, one with levels and one with everything inverted.
    const YccShift shifts[] = {
        {{0, 0}, {0, -128}, {0, -128}}, {{0, 40}, {0, -28}, {0, -300}}, {{255, 0}, {255, -128}, {255, -128}}};
    for (const YccShift& shift : shifts) {
        CompareAllColours([&](const PlanarRow& row, int count) { TheYccKernels().shift(shift, row, count); },
                          [&](int r, int g, int b) {
                              const Ycc c = Forward(r, g, b, 128.0F);
                              return Back(static_cast<float>((c.y ^ shift.y.flip) + shift.y.add),
                                          static_cast<float>((c.cr ^ shift.cr.flip) + shift.cr.add),
                                          static_cast<float>((c.cb ^ shift.cb.flip) + shift.cb.add));
                          });
    }
}

TEST_P(AllColours, ScaledDifferences) {
    for (const float factor : {0.0F, 1.5F, 11.0F}) {
        CompareAllColours([&](const PlanarRow& row, int count) { TheYccKernels().scale(factor, row, count); },
                          [&](int r, int g, int b) {
                              const Ycc c = Forward(r, g, b, 0.0F);
                              return Back(static_cast<float>(c.y), static_cast<float>(c.cr) * factor,
                                          static_cast<float>(c.cb) * factor);
                          });
    }
}

TEST_P(AllColours, MappedComponents) {
    static YccTables tables;
    for (int i = 0; i != 256; ++i) {
        tables.y[i] = static_cast<float>((i * 7919) % 600 - 150);
        tables.cr[i] = static_cast<float>(i % 3 == 0 ? -400 + i : 128 - i);
        tables.cb[i] = static_cast<float>(i / 2 - 64);
    }
    tables.y[200] = 536870912.0F; // far beyond any colour
    tables.cb[13] = -536870912.0F;
    CompareAllColours([&](const PlanarRow& row, int count) { TheYccKernels().map(tables, row, count); },
                      [&](int r, int g, int b) {
                          const Ycc c = Forward(r, g, b, 128.0F);
                          return Back(tables.y[c.y], tables.cr[c.cr], tables.cb[c.cb]);
                      });
}

TEST_P(AllColours, LuminanceInSingleAndGreyInDoublePrecision) {
    const auto grey = [](int r, int g, int b) {
        return static_cast<BYTE>(static_cast<double>(kTables.product[0][r]) +
                                 static_cast<double>(kTables.product[1][g]) +
                                 static_cast<double>(kTables.product[2][b]));
    };
    BYTE level[256];
    CompareAllColours(
        [&](const PlanarRow& row, int count) {
            TheLuminanceKernels().luminance(row, level, count);
            std::copy_n(level, count, row.blue);
        },
        [&](int r, int g, int b) {
            return Rgb{static_cast<BYTE>(r), static_cast<BYTE>(g), static_cast<BYTE>(Forward(r, g, b, 0.0F).y)};
        });
    CompareAllColours(
        [&](const PlanarRow& row, int count) {
            TheLuminanceKernels().greyLevel(row, level, count);
            std::copy_n(level, count, row.blue);
        },
        [&](int r, int g, int b) {
            return Rgb{static_cast<BYTE>(r), static_cast<BYTE>(g), grey(r, g, b)};
        });
}

// Runs that are no whole number of vectors change all of their pixels and nothing behind them.
TEST_P(AllColours, RunsOfEveryLength) {
    for (int width = 0; width != 40; ++width) {
        std::vector<BYTE> channels[3];
        for (std::size_t c = 0; c != 3; ++c) {
            channels[c].resize(64);
            for (std::size_t i = 0; i != 64; ++i) {
                channels[c][i] = static_cast<BYTE>(i * 37 + c * 91);
            }
        }
        std::vector<BYTE> luminance(64, 0xA5);
        const std::vector<BYTE> before[3] = {channels[0], channels[1], channels[2]};
        const PlanarRow row = {channels[0].data(), channels[1].data(), channels[2].data()};
        TheLuminanceKernels().luminance(row, luminance.data(), width);
        TheYccKernels().scale(2.0F, row, width);
        for (std::size_t i = 0; i != 64; ++i) {
            const bool inside = i < static_cast<std::size_t>(width);
            const Ycc c = Forward(before[2][i], before[1][i], before[0][i], 0.0F);
            const Rgb changed =
                Back(static_cast<float>(c.y), 2.0F * static_cast<float>(c.cr), 2.0F * static_cast<float>(c.cb));
            ASSERT_EQ(inside ? c.y : 0xA5, luminance[i]) << i << " of " << width;
            ASSERT_EQ(inside ? changed.b : before[0][i], channels[0][i]) << i << " of " << width;
            ASSERT_EQ(inside ? changed.g : before[1][i], channels[1][i]) << i << " of " << width;
            ASSERT_EQ(inside ? changed.r : before[2][i], channels[2][i]) << i << " of " << width;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, AllColours, testing::Values(Target::kBaseline, Target::kAvx2),
                         [](const auto& target) { return target.param == Target::kAvx2 ? "Avx2" : "Baseline"; });

} // namespace
