// The filters' kernels give the same bytes for every processor; what they give is compared with the definitions through
// the exports.
#include <gtest/gtest.h>

#include <vector>

#include "filter/box_mean_kernels.h"
#include "filter/convolution_kernels.h"
#include "filter/outline_kernels.h"
#include "filter/sharpen_kernels.h"
#include "filter/smoothing_kernels.h"
#include "simd/target.h"
#include "support/picture.h"

namespace test {
namespace {

constexpr int kCount = 203;
constexpr int kRoom = kCount + 2 * qv8::kMaxNarrowRadius * 3 + 128;

Bytes RandomBytes(Random& random) {
    Bytes bytes(kRoom);
    for (BYTE& byte : bytes) {
        byte = static_cast<BYTE>(random.Chance(4) ? 255 * random.Between(0, 1) : random.Between(0, 255));
    }
    return bytes;
}

// Everything that the kernels of the target in use make of the same numbers.
Bytes AllResults(std::uint64_t seed) {
    Random random(seed);
    Bytes all;
    const auto keep = [&](const void* results, std::size_t bytes) {
        const auto* const begin = static_cast<const BYTE*>(results);
        all.insert(all.end(), begin, begin + bytes);
    };
    std::vector<Bytes> rows;
    const BYTE* sources[9];
    for (const BYTE*& source : sources) {
        rows.push_back(RandomBytes(random));
        source = rows.back().data() + 8;
    }
    Bytes result(kRoom);
    const int divisor = random.Between(1, 255);
    LONG weights[9];
    for (LONG& weight : weights) {
        weight = random.Between(-14, 14);
    }
    qv8::TheConvolutionKernels().narrow(sources, weights, 9, -14 * 9 * 255, {divisor, 17}, kCount, result.data());
    keep(result.data(), kCount);
    for (LONG& weight : weights) {
        weight = random.Between(-0x7FFFFFFF, 0x7FFFFFFF) >> random.Between(0, 30);
    }
    qv8::TheConvolutionKernels().wide(sources, weights, 9, {divisor, 17}, kCount, result.data());
    keep(result.data(), kCount);

    std::vector<short> differences(kRoom);
    for (int count = 1; count <= 3; ++count) {
        qv8::TheSharpenKernels().differences(sources, count, sources[1], kCount, differences.data());
        keep(differences.data(), kCount * sizeof(short));
    }
    qv8::TheSharpenKernels().grey(1.23F, sources[1], differences.data(), kCount, result.data());
    keep(result.data(), kCount);

    std::vector<WORD> sums(kRoom);
    for (const BYTE* const source : sources) {
        qv8::TheBoxMeanKernels().slide(source, nullptr, kCount, sums.data());
    }
    qv8::TheBoxMeanKernels().slide(sources[3], sources[0], kCount, sums.data());
    qv8::TheBoxMeanKernels().slide(nullptr, sources[3], kCount, sums.data());
    keep(sums.data(), kCount * sizeof(WORD));
    const int radius = random.Between(1, qv8::kMaxNarrowRadius);
    for (WORD& sum : sums) {
        sum = static_cast<WORD>(random.Between(0, 255 * (2 * radius + 1)));
    }
    const int boxPixels = (2 * radius + 1) * (2 * radius + 1);
    qv8::TheBoxMeanKernels().narrowMeans(sums.data() + 24, radius, 3, boxPixels, kCount, result.data());
    keep(result.data(), kCount);
    std::vector<DWORD> running(kRoom + 4);
    qv8::TheBoxMeanKernels().runningSums(sums.data(), 3, kCount + 3, running.data());
    qv8::TheBoxMeanKernels().wideMeans(running.data(), 3 * 11, 11 * (2 * radius + 1), kCount - 33, result.data());
    keep(result.data(), kCount - 33);

    const qv8::OutlineKernels& outline = qv8::TheOutlineKernels();
    for (const auto gradient : {outline.difference, outline.roberts, outline.sobel}) {
        gradient(sources[0], sources[1], sources[2], static_cast<float>(random.Between(0, 100)), kCount, result.data());
        keep(result.data(), kCount);
    }
    const qv8::SmoothingKernels& smoothing = qv8::TheSmoothingKernels();
    smoothing.means(sources[0], 3, kCount, result.data());
    keep(result.data(), kCount);
    for (const int missing : {0, 1, 2}) { // 1: none of the outer rows
        const qv8::RowsOfThree around = {
            {missing == 0 ? nullptr : sources[3], sources[4], missing == 2 ? nullptr : sources[5]}};
        smoothing.medians(around, 3, random.Between(0, 255), kCount, result.data());
        keep(result.data(), kCount);
        smoothing.medianPositions(around, kCount, result.data());
        keep(result.data(), kCount);
        smoothing.medianLevels(around, kCount, result.data());
        keep(result.data(), kCount);
    }
    return all;
}

TEST(FilterKernels, GiveTheSameBytesOnEveryProcessor) {
    for (std::uint64_t seed = 1; seed <= 300; ++seed) {
        const Bytes best = AllResults(seed);
        qv8::UseTarget(qv8::Target::kBaseline);
        const Bytes baseline = AllResults(seed);
        qv8::UseTarget(qv8::BestTarget());
        ASSERT_EQ(best, baseline) << seed;
    }
}

} // namespace
} // namespace test
