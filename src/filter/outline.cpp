#include "filter/outline.h"

#include <algorithm>
#include <iterator>

#include "filter/outline_kernels.h"

namespace qv8 {
namespace {

constexpr int kMaxGain = 100;
constexpr Plane kChannels[] = {kLuminance, kRed, kGreen, kBlue}; // by the number that callers give

struct Edges {
    Plane plane;
    OutlineKernels::Gradient gradient;
    float gain;
};

void OutlinePixels(const void* context, const FilterRow& at, int begin, int end, const PlanarRow& result) {
    const Edges& edges = *static_cast<const Edges*>(context);
    const BYTE* const* const rows = at.rows[at.isGrey ? kBlue : edges.plane];
    edges.gradient(rows[-1] + begin, rows[0] + begin, rows[1] + begin, edges.gain, end - begin, result.blue);
}

OutlineKernels::Gradient GradientOf(BYTE edgeOperator) {
    const OutlineKernels& kernels = TheOutlineKernels();
    switch (edgeOperator) {
    case 0:
        return kernels.difference;
    case 2:
        return kernels.sobel;
    default:
        return kernels.roberts;
    }
}

} // namespace

HGLOBAL Outline(const AreaArguments& area, BYTE channel, BYTE edgeOperator, BYTE gain, const Progress& progress) {
    Filter filter;
    filter.valid = channel < std::size(kChannels);
    const Edges edges = {filter.valid ? kChannels[channel] : kLuminance, GradientOf(edgeOperator),
                         static_cast<float>(std::min<int>(gain, kMaxGain))};
    filter.reach = 1;
    filter.context = &edges;
    filter.filterPixels = OutlinePixels;
    filter.result = Filter::Result::kGrey;
    filter.wantsLuminance = edges.plane == kLuminance;
    filter.wantsColours = !filter.wantsLuminance;
    return ApplyFilter(area, filter, progress);
}

} // namespace qv8
