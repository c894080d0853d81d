#include "select/colour_match.h"

#include "pixels/luminance_kernels.h"
#include "select/colour_match_kernels.h"

namespace qv8 {
namespace {

// What a mode compares, as planar components: the channels themselves, or computed ones.
struct ComparedComponents {
    const BYTE* planes[3];
    int count;
    BYTE computed[2][kChunkPixels];
};

void ComputeComponents(MatchMode mode, PlanarChunk& chunk, int count, ComparedComponents& result) {
    const ColourMatchKernels& kernels = TheColourMatchKernels();
    switch (mode) {
    case MatchMode::kRgb:
        result.planes[0] = chunk.red;
        result.planes[1] = chunk.green;
        result.planes[2] = chunk.blue;
        result.count = 3;
        return;
    case MatchMode::kColourDifferences:
        kernels.differences(chunk.Row(), result.computed[0], result.computed[1], count);
        result.planes[0] = result.computed[0];
        result.planes[1] = result.computed[1];
        result.count = 2;
        return;
    case MatchMode::kBrightness:
        TheLuminanceKernels().luminance(chunk.Row(), result.computed[0], count);
        result.planes[0] = result.computed[0];
        result.count = 1;
        return;
    }
}

} // namespace

ColourMatcher MakeColourMatcher(MatchMode mode, const RGBQUAD& key, BYTE tolerance) {
    PlanarChunk chunk = {};
    chunk.red[0] = key.rgbRed;
    chunk.green[0] = key.rgbGreen;
    chunk.blue[0] = key.rgbBlue;
    ComparedComponents components;
    ComputeComponents(mode, chunk, 1, components);
    ColourMatcher matcher = {mode, {}, static_cast<WORD>(components.count * tolerance)};
    for (int i = 0; i != components.count; ++i) {
        matcher.components[i] = components.planes[i][0];
    }
    return matcher;
}

void MatchColours(const ColourMatcher& matcher, PlanarChunk& chunk, int count, BYTE* matches) {
    const ColourMatchKernels& kernels = TheColourMatchKernels();
    ComparedComponents components;
    ComputeComponents(matcher.mode, chunk, count, components);
    kernels.compare[components.count - 1](components.planes, matcher.components, matcher.limit, matches, count);
}

} // namespace qv8
