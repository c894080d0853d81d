#include "filter/convolution.h"

#include <algorithm>
#include <cstdint>

#include "filter/convolution_kernels.h"

namespace qv8 {
namespace {

constexpr int kCustomSide = 9;

// Relief kernels, the row above first: lit from the right, then clockwise.
constexpr LONG kRelief[8][9] = {
    {-2, 0, 2, -2, 0, 2, -2, 0, 2}, {-2, -1, 0, -1, 0, 1, 0, 1, 2}, {-2, -2, -2, 0, 0, 0, 2, 2, 2},
    {0, -1, -2, 1, 0, -1, 2, 1, 0}, {2, 0, -2, 2, 0, -2, 2, 0, -2}, {2, 1, 0, 1, 0, -1, 0, -1, -2},
    {2, 2, 2, 0, 0, 0, -2, -2, -2}, {0, 1, 2, -1, 0, 1, -2, -1, 0},
};

} // namespace

Convolution MakeConvolution(const LONG* kernel, int side, int divisor, int offset) {
    Convolution result;
    result.divisor = divisor;
    result.offset = offset;
    std::int64_t lowest = 0;
    std::int64_t highest = 0;
    for (int i = 0; i < side * side; ++i) {
        if (kernel[i] != 0) {
            result.taps[result.tapCount++] = {i % side - side / 2, side / 2 - i / side, kernel[i]};
            (kernel[i] < 0 ? lowest : highest) += std::int64_t{kernel[i]} * 255;
        }
    }
    result.narrow = highest - lowest <= 0xFFFF;
    result.lowest = result.narrow ? static_cast<int>(lowest) : 0;
    return result;
}

void Convolve(const void* context, const FilterRow& at, Plane plane, int begin, int count, BYTE* result) {
    const auto& convolution = *static_cast<const Convolution*>(context);
    const BYTE* sources[kMaxTaps];
    LONG weights[kMaxTaps];
    for (int i = 0; i < convolution.tapCount; ++i) {
        const Tap& tap = convolution.taps[i];
        sources[i] = at.rows[plane][tap.dy] + begin + tap.dx * at.step;
        weights[i] = tap.weight;
    }
    const SumScale scale = {convolution.divisor, convolution.offset};
    if (convolution.narrow) {
        TheConvolutionKernels().narrow(sources, weights, convolution.tapCount, convolution.lowest, scale, count,
                                       result);
    } else {
        TheConvolutionKernels().wide(sources, weights, convolution.tapCount, scale, count, result);
    }
}

HGLOBAL CustomFilter(const AreaArguments& area, const LONG* kernel, BYTE divisor, BYTE offset, bool red, bool green,
                     bool blue, const Progress& progress) {
    Convolution convolution;
    Filter filter;
    filter.valid = kernel != nullptr && divisor != 0;
    if (filter.valid) {
        convolution = MakeConvolution(kernel, kCustomSide, divisor, offset);
    }
    filter.reach = kCustomSide / 2;
    filter.context = &convolution;
    filter.filterSamples = Convolve;
    filter.channels[kBlue] = blue;
    filter.channels[kGreen] = green;
    filter.channels[kRed] = red;
    return ApplyFilter(area, filter, progress);
}

HGLOBAL Emboss(const AreaArguments& area, BYTE direction, BYTE depth, BYTE base, const Progress& progress) {
    Convolution convolution;
    Filter filter;
    filter.valid = direction < std::size(kRelief);
    if (filter.valid) {
        convolution = MakeConvolution(kRelief[direction], 3, 6 - std::clamp<int>(depth, 1, 5), base);
    }
    filter.reach = 1;
    filter.context = &convolution;
    filter.filterSamples = Convolve;
    return ApplyFilter(area, filter, progress);
}

} // namespace qv8
