#include "filter/anti_alias.h"

#include "filter/smoothing_kernels.h"

namespace qv8 {
namespace {

// The mean of a sample at the left or right border with the one neighbour it has, if any.
BYTE CutMean(const BYTE* row, int index, int samples, int step) {
    if (index >= step) {
        return static_cast<BYTE>((row[index] + row[index - step]) / 2);
    }
    return index + step < samples ? static_cast<BYTE>((row[index] + row[index + step]) / 2) : row[index];
}

void MeansAround(const void* /*context*/, const FilterRow& at, Plane plane, int begin, int count, BYTE* result) {
    const BYTE* const row = at.rows[plane][0];
    TheSmoothingKernels().means(row + begin, at.step, count, result);
    const int samples = at.width * at.step;
    ForEachCutSample(at, begin, count, [&](int i) { result[i - begin] = CutMean(row, i, samples, at.step); });
}

} // namespace

HGLOBAL AntiAlias(const AreaArguments& area, const Progress& progress) {
    Filter filter;
    filter.reach = 1;
    filter.filterSamples = MeansAround;
    filter.isFloatless = true;
    return ApplyFilter(area, filter, progress);
}

} // namespace qv8
