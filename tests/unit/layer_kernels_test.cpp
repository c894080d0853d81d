// Blending in integers against the double precision rule, and runs of bits against single bits.
#include <cstring>
#include <vector>

#include "compose/layer_kernels.h"
#include "pixels/bit_copy.h"
#include "simd/target.h"
#include "support/picture.h"

namespace test {
namespace {

class LayerKernels : public testing::TestWithParam<qv8::Target> {
protected:
    void SetUp() override {
        qv8::UseTarget(GetParam());
    }
    void TearDown() override {
        qv8::UseTarget(qv8::BestTarget());
    }
};

// Every opacity over every pair of values.
TEST_P(LayerKernels, BlendAsTheSumOfTwoDoubles) {
    std::vector<BYTE> layer(256 * 256 * 3);
    for (std::size_t i = 0; i != 65536; ++i) {
        std::memset(&layer[3 * i], static_cast<int>(i % 256), 3);
    }
    for (int a = 0; a != 256; ++a) {
        std::vector<BYTE> pixels(layer.size());
        for (std::size_t i = 0; i != 65536; ++i) {
            std::memset(&pixels[3 * i], static_cast<int>(i / 256), 3);
        }
        std::vector<BYTE> levels = pixels;
        qv8::TheLayerKernels().blendLevels(static_cast<BYTE>(a), layer.data(), levels.data(), 65536 * 3);
        // A key that no layer pixel has: its channels differ.
        qv8::TheLayerKernels().blend24({static_cast<BYTE>(a), {1, 2, 3}}, layer.data(), pixels.data(), 65536);
        for (int i = 0; i != 65536; ++i) {
            const int base = i / 256;
            const int over = i % 256;
            const int expected =
                base == over ? base : static_cast<int>((255.0 - a) * base / 255 + 1.0 * a * over / 255);
            const BYTE* const pixel = &pixels[static_cast<std::size_t>(3 * i)];
            ASSERT_TRUE(pixel[0] == expected && pixel[1] == expected && pixel[2] == expected)
                << a << ", " << base << ", " << over;
        }
        ASSERT_EQ(levels, pixels) << a;
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, LayerKernels, testing::Values(qv8::Target::kBaseline, qv8::Target::kAvx2));

TEST(BitCopy, MovesRunsOfBits) {
    Random random(70);
    const auto bitOf = [](const Bytes& bytes, std::size_t bit) { return bytes[bit / 8] >> (7 - bit % 8) & 1; };
    for (int i = 0; i != 5000; ++i) {
        const auto count = static_cast<std::size_t>(random.Between(0, 200));
        const auto from = static_cast<std::size_t>(random.Between(0, 30));
        const auto to = static_cast<std::size_t>(random.Between(0, 30));
        Bytes source((from + count + 7) / 8); // not a byte more than there is to read
        Bytes before((to + count + 7) / 8);
        for (Bytes* const bytes : {&source, &before}) {
            for (BYTE& byte : *bytes) {
                byte = random.Byte();
            }
        }
        Bytes after = before;
        qv8::CopyBits(source.data(), from, after.data(), to, count);
        for (std::size_t bit = 0; bit != after.size() * 8; ++bit) {
            const bool copied = bit >= to && bit < to + count;
            ASSERT_EQ(bitOf(after, bit), copied ? bitOf(source, bit - to + from) : bitOf(before, bit))
                << count << " from " << from << " to " << to;
        }
    }
}

} // namespace
} // namespace test
