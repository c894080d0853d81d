// Every kernel on every target against the plain rule, at every width up to a few vectors, from unaligned addresses,
// with guard bytes around what it writes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "pixels/pixel_kernels.h"
#include "simd/target.h"
#include "tone/curve_kernels.h"

namespace {

using namespace qv8;

constexpr BYTE kGuard = 0xA5;
constexpr std::size_t kMargin = 64;
const std::vector<int> kWidths = [] {
    std::vector<int> widths;
    for (int width = 0; width <= 40; ++width) {
        widths.push_back(width);
    }
    widths.insert(widths.end(), {63, 64, 65, 95, 96, 97, 200, 333});
    return widths;
}();

// Bytes rich in 0 and 255, the same on every run.
struct Noise {
    std::uint32_t state = 1;
    BYTE Next() {
        state = state * 1664525U + 1013904223U;
        const auto value = static_cast<BYTE>(state >> 24U);
        const unsigned kind = (state >> 16U) & 7U;
        return kind == 0 ? BYTE{0} : kind == 1 ? BYTE{255} : value;
    }
};

// `size` bytes between guards, at an odd address.
class Guarded {
public:
    explicit Guarded(std::size_t size, Noise* noise = nullptr) : bytes_(size + 2 * kMargin + 1, kGuard), size_(size) {
        for (std::size_t i = 0; noise != nullptr && i != size; ++i) {
            Data()[i] = noise->Next();
        }
    }
    BYTE* Data() {
        return bytes_.data() + kMargin + 1;
    }
    bool GuardsHold() const {
        const auto isGuard = [](BYTE byte) { return byte == kGuard; };
        return std::all_of(bytes_.begin(), bytes_.begin() + kMargin + 1, isGuard) &&
               std::all_of(bytes_.end() - kMargin, bytes_.end(), isGuard);
    }
    std::vector<BYTE> Bytes() {
        return {Data(), Data() + size_};
    }

private:
    std::vector<BYTE> bytes_;
    std::size_t size_;
};

class OnTarget : public testing::TestWithParam<Target> {
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
using Kernels = OnTarget;

struct Channels {
    unsigned blue;
    unsigned green;
    unsigned red;
};

struct Layout {
    const char* name;
    PixelCodec PixelKernels::*codec;
    int bytes;
    unsigned greenLevels; // of a word: 32, 64, or 0 where nothing can be read
};
const Layout kLayouts[] = {{"555", &PixelKernels::words555, 2, 32},
                           {"565", &PixelKernels::words565, 2, 64},
                           {"unknown", &PixelKernels::unknownWords, 2, 0},
                           {"24", &PixelKernels::bgr, 3, 0},
                           {"32", &PixelKernels::bgrx, 4, 0}};

// What a packed pixel means, written as the layout defines it.
Channels Meaning(const BYTE* pixel, const Layout& layout) {
    if (layout.bytes != 2) {
        return {pixel[0], pixel[1], pixel[2]};
    }
    if (layout.greenLevels == 0) {
        return {0, 0, 0};
    }
    const unsigned word = pixel[0] + 256U * pixel[1];
    const unsigned green = word / 32 % layout.greenLevels;
    const unsigned red = word / 32 / layout.greenLevels % 32;
    return {word % 32 * 255 / 31, green * 255 / (layout.greenLevels - 1), red * 255 / 31};
}

// The bytes of a pixel with these channels; `fourth` is what stood there before.
std::vector<BYTE> Packed(const Channels& c, const Layout& layout, BYTE fourth) {
    if (layout.bytes == 2) {
        const bool is555 = layout.greenLevels == 32;
        const unsigned green = is555 ? c.green * 31 / 255 : c.green * 63 / 255;
        const unsigned word = (c.red * 31 / 255) * (is555 ? 1024 : 2048) + green * 32 + c.blue * 31 / 255;
        return {static_cast<BYTE>(word % 256), static_cast<BYTE>(word / 256)};
    }
    std::vector<BYTE> pixel = {static_cast<BYTE>(c.blue), static_cast<BYTE>(c.green), static_cast<BYTE>(c.red)};
    if (layout.bytes == 4) {
        pixel.push_back(fourth);
    }
    return pixel;
}

TEST_P(Kernels, DecodeGivesTheChannelsOfEveryPixel) {
    Noise noise;
    for (const Layout& layout : kLayouts) {
        const PixelCodec& codec = ThePixelKernels().*layout.codec;
        for (const int width : kWidths) {
            const auto count = static_cast<std::size_t>(width);
            Guarded source(count * static_cast<std::size_t>(layout.bytes), &noise);
            Guarded blue(count);
            Guarded green(count);
            Guarded red(count);
            codec.decode(source.Data(), {blue.Data(), green.Data(), red.Data()}, width);
            for (int i = 0; i != width; ++i) {
                const Channels c = Meaning(source.Data() + i * layout.bytes, layout);
                ASSERT_EQ(c.blue, blue.Data()[i]) << layout.name << ", pixel " << i << " of " << width;
                ASSERT_EQ(c.green, green.Data()[i]) << layout.name << ", pixel " << i << " of " << width;
                ASSERT_EQ(c.red, red.Data()[i]) << layout.name << ", pixel " << i << " of " << width;
            }
            ASSERT_TRUE(blue.GuardsHold() && green.GuardsHold() && red.GuardsHold()) << width;
        }
    }
}

TEST_P(Kernels, EncodeWritesEveryPixelAndNoOtherByte) {
    Noise noise;
    for (const Layout& layout : kLayouts) {
        const PixelCodec& codec = ThePixelKernels().*layout.codec;
        for (const int width : kWidths) {
            const auto count = static_cast<std::size_t>(width);
            Guarded blue(count, &noise);
            Guarded green(count, &noise);
            Guarded red(count, &noise);
            Guarded result(count * static_cast<std::size_t>(layout.bytes), &noise);
            const std::vector<BYTE> before = result.Bytes();
            codec.encode({blue.Data(), green.Data(), red.Data()}, result.Data(), width);
            std::vector<BYTE> expected;
            for (std::size_t i = 0; i != count; ++i) {
                const BYTE fourth = layout.bytes == 4 ? before[4 * i + 3] : BYTE{0};
                const std::vector<BYTE> pixel =
                    Packed({blue.Data()[i], green.Data()[i], red.Data()[i]}, layout, fourth);
                expected.insert(expected.end(), pixel.begin(), pixel.end());
            }
            ASSERT_EQ(expected, result.Bytes()) << layout.name << ", " << width << " pixels";
            ASSERT_TRUE(result.GuardsHold()) << layout.name << ", " << width << " pixels";
        }
    }
}

TEST_P(Kernels, WideningAndNarrowingKeepThreeBytes) {
    Noise noise;
    for (const int width : kWidths) {
        const auto count = static_cast<std::size_t>(width);
        Guarded packed24(3 * count, &noise);
        Guarded packed32(4 * count, &noise);
        Guarded wide(4 * count, &noise);
        Guarded narrow(3 * count, &noise);
        ThePixelKernels().widen24(packed24.Data(), wide.Data(), width);
        ThePixelKernels().narrow32(packed32.Data(), narrow.Data(), width);
        for (std::size_t i = 0; i != count; ++i) {
            for (std::size_t c = 0; c != 3; ++c) {
                ASSERT_EQ(packed24.Data()[3 * i + c], wide.Data()[4 * i + c]) << width;
                ASSERT_EQ(packed32.Data()[4 * i + c], narrow.Data()[3 * i + c]) << width;
            }
            ASSERT_EQ(0, wide.Data()[4 * i + 3]) << width;
        }
        ASSERT_TRUE(wide.GuardsHold() && narrow.GuardsHold()) << width;
    }
}

int ShiftedByRule(int value, const ByteShift& shift) {
    const int raised = std::min((value ^ shift.flip) + shift.add, 255);
    return std::max(raised - shift.subtract, 0);
}

TEST_P(Kernels, ShiftsSaturateAtBothEnds) {
    Noise noise;
    const CurveKernels& kernels = TheCurveKernels();
    for (const int width : kWidths) {
        ShiftPattern pattern;
        for (std::size_t i = 0; i != ShiftPattern::kLength; ++i) {
            pattern.flip[i] = noise.Next();
            pattern.add[i] = noise.Next();
            pattern.subtract[i] = noise.Next();
        }
        const auto count = static_cast<std::size_t>(width);
        Guarded source(count, &noise);
        Guarded result(count, &noise);
        kernels.shiftBytes(pattern, source.Data(), result.Data(), count);
        Guarded channel(count, &noise);
        const std::vector<BYTE> before = channel.Bytes();
        const ByteShift shift = {noise.Next(), noise.Next(), noise.Next()};
        kernels.shiftChannel(shift, channel.Data(), width);
        for (std::size_t i = 0; i != count; ++i) {
            const std::size_t k = i % ShiftPattern::kLength;
            ASSERT_EQ(ShiftedByRule(source.Data()[i], {pattern.flip[k], pattern.add[k], pattern.subtract[k]}),
                      result.Data()[i]);
            ASSERT_EQ(ShiftedByRule(before[i], shift), channel.Data()[i]);
        }
        ASSERT_TRUE(result.GuardsHold() && channel.GuardsHold()) << width;
    }
}

TEST_P(Kernels, TablesMapEachChannelAndKeepTheFourthByte) {
    Noise noise;
    CurveTables tables;
    for (auto& channel : tables.channel) {
        std::generate(std::begin(channel), std::end(channel), [&] { return noise.Next(); });
    }
    const CurveKernels& kernels = TheCurveKernels();
    for (const int width : kWidths) {
        for (const std::size_t bytesPerPixel : {3U, 4U}) {
            const std::size_t size = static_cast<std::size_t>(width) * bytesPerPixel;
            Guarded source(size, &noise);
            Guarded result(size, &noise);
            (bytesPerPixel == 3 ? kernels.lookUp24 : kernels.lookUp32)(tables, source.Data(), result.Data(), width);
            for (std::size_t i = 0; i != size; ++i) {
                const std::size_t c = i % bytesPerPixel;
                const BYTE value = source.Data()[i];
                ASSERT_EQ(c == 3 ? value : tables.channel[c][value], result.Data()[i]);
            }
            ASSERT_TRUE(result.GuardsHold());
        }
        Guarded channel(static_cast<std::size_t>(width), &noise);
        const std::vector<BYTE> before = channel.Bytes();
        kernels.lookUpChannel(tables.channel[0], channel.Data(), width);
        for (std::size_t i = 0; i != before.size(); ++i) {
            ASSERT_EQ(tables.channel[0][before[i]], channel.Data()[i]);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, Kernels, testing::Values(Target::kBaseline, Target::kAvx2),
                         [](const auto& target) { return target.param == Target::kAvx2 ? "Avx2" : "Baseline"; });

} // namespace
