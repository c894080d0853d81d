#include "filter/remove_noise.h"

#include <algorithm>
#include <cstdlib>

#include "filter/smoothing_kernels.h"
#include "frame/rows.h"

namespace qv8 {
namespace {

constexpr BYTE kByLuminance = 0;
constexpr BYTE kByChannel = 1;
constexpr BYTE kCentre = 4; // among the nine places of a neighbourhood

RowsOfThree RowsAround(const FilterRow& at, Plane plane, int begin) {
    const BYTE* const* const rows = at.rows[plane];
    return {
        {at.row > 0 ? rows[-1] + begin : nullptr, rows[0] + begin, at.row + 1 < at.height ? rows[1] + begin : nullptr}};
}

// Runs use(sample, place) for the samples of a neighbourhood that are in the picture, by their places.
template <class Use>
void ForEachNeighbour(const FilterRow& at, Plane plane, int index, Use use) {
    const int samples = at.width * at.step;
    for (int place = 0; place < 9; ++place) {
        const int row = at.row + place / 3 - 1;
        const int other = index + (place % 3 - 1) * at.step;
        if (row >= 0 && row < at.height && other >= 0 && other < samples) {
            use(at.rows[plane][place / 3 - 1][other], place);
        }
    }
}

int Min(int a, int b) {
    return std::min(a, b);
}
int Max(int a, int b) {
    return std::max(a, b);
}

#include "filter/medians.inl"

// The samples of a neighbourhood that are in the picture, each a different number: sample * 16 + position, as
// Filter::Result::kNeighbour tells it.
struct Neighbourhood {
    static constexpr int kMissing = 0x7FFF;

    int keys[9] = {kMissing, kMissing, kMissing, kMissing, kMissing, kMissing, kMissing, kMissing, kMissing};
    int count = 0;

    void Add(BYTE sample, int place) {
        keys[place] = sample << 4 | (place + place / 3);
        ++count;
    }
    // The key of middle rank, of an even number the upper one: the fifth of nine, when some of the missing ones are
    // taken for small and the others for large.
    int MedianKey() {
        int small = 4 - count / 2;
        for (int& key : keys) {
            key = key == kMissing && small-- > 0 ? -1 : key;
        }
        return MedianOfColumns(Sort(keys[0], keys[3], keys[6]), Sort(keys[1], keys[4], keys[7]),
                               Sort(keys[2], keys[5], keys[8]));
    }
};

// Whether all that neighbourhoods at the left and right border lack is a column.
bool LacksColumnOnly(const FilterRow& at) {
    return at.row > 0 && at.row + 1 < at.height && at.width > 1;
}

// The vector loops want a second row and neighbours on both sides; these do without.
template <class Cut, class Whole>
void FilterSamples(const FilterRow& at, int begin, int count, Cut cut, Whole whole) {
    if (at.height == 1) {
        for (int i = begin; i < begin + count; ++i) {
            cut(i);
        }
        return;
    }
    whole();
    ForEachCutSample(at, begin, count, cut);
}

// --- By channel ------------------------------------------------------------------------------------------------------

// The third of five neighbours is the fifth of nine, the centre being a large one, the missing column one large and two
// small ones.
BYTE CutMedianBeside(const FilterRow& at, const BYTE* const* rows, int index, int threshold) {
    const int other = index < at.step ? index + at.step : index - at.step;
    const int centre = rows[0][index];
    const Sorted<int> beside = Sort<int>(rows[-1][other], rows[0][other], rows[1][other]);
    const Sorted<int> own = {Min(rows[-1][index], rows[1][index]), Max(rows[-1][index], rows[1][index]), 255};
    const int farthest = Max(Max(beside.high, own.middle) - centre, centre - Min(beside.low, own.low));
    return static_cast<BYTE>(farthest > threshold ? MedianOfColumns(beside, own, {0, 0, 255}) : centre);
}

BYTE CutMedian(const FilterRow& at, Plane plane, int index, int threshold) {
    if (LacksColumnOnly(at)) {
        return CutMedianBeside(at, at.rows[plane], index, threshold);
    }
    Neighbourhood neighbours;
    const BYTE centre = at.rows[plane][0][index];
    bool standsOut = false;
    ForEachNeighbour(at, plane, index, [&](BYTE sample, int place) {
        if (place != kCentre) {
            neighbours.Add(sample, place);
            standsOut |= std::abs(sample - centre) > threshold;
        }
    });
    return standsOut ? static_cast<BYTE>(neighbours.MedianKey() >> 4) : centre;
}

void MedianSamples(const void* context, const FilterRow& at, Plane plane, int begin, int count, BYTE* result) {
    const int threshold = *static_cast<const int*>(context);
    FilterSamples(
        at, begin, count, [&](int i) { result[i - begin] = CutMedian(at, plane, i, threshold); },
        [&] { TheSmoothingKernels().medians(RowsAround(at, plane, begin), at.step, threshold, count, result); });
}

// --- By luminance ----------------------------------------------------------------------------------------------------

int CutMedianKey(const FilterRow& at, int column) {
    if (LacksColumnOnly(at)) {
        const BYTE* const* const rows = at.rows[kLuminance];
        const auto keys = [=](int other) {
            const int place = other - column + 1;
            return Sort(rows[-1][other] << 4 | place, rows[0][other] << 4 | (4 + place),
                        rows[1][other] << 4 | (8 + place));
        };
        return MedianOfColumns(keys(column), keys(column == 0 ? 1 : column - 1),
                               {-1, Neighbourhood::kMissing, Neighbourhood::kMissing});
    }
    Neighbourhood samples;
    ForEachNeighbour(at, kLuminance, column, [&](BYTE sample, int place) { samples.Add(sample, place); });
    return samples.MedianKey();
}

// In grey pictures the level is the new index, whatever the table holds there.
void MedianPixels(const void* /*context*/, const FilterRow& at, int begin, int end, const PlanarRow& result) {
    const SmoothingKernels& kernels = TheSmoothingKernels();
    const bool levels = at.isGrey;
    FilterSamples(
        at, begin, end - begin,
        [&](int column) {
            const int key = CutMedianKey(at, column);
            result.blue[column - begin] = static_cast<BYTE>(levels ? key >> 4 : key & 15);
        },
        [&] {
            (levels ? kernels.medianLevels : kernels.medianPositions)(RowsAround(at, kLuminance, begin), end - begin,
                                                                      result.blue);
        });
}

// --- Neither ---------------------------------------------------------------------------------------------------------

HGLOBAL CopyUnchanged(const AreaArguments& areaArguments, const Progress& progress) {
    Picture source;
    Area area;
    if (!OpenArea(areaArguments, kAcceptGreyOrTrueColour, true, source, area)) {
        return nullptr;
    }
    NewPicture result = DuplicateDib(source.view, InitialPixels::kCopied);
    if (!result || !ForEachRow(area.rect.Height(), progress, [](int /*row*/) {})) {
        return nullptr;
    }
    return result.Release();
}

} // namespace

HGLOBAL RemoveNoise(const AreaArguments& area, BYTE mode, BYTE sensitivity, const Progress& progress) {
    if (mode != kByLuminance && mode != kByChannel) {
        return CopyUnchanged(area, progress);
    }
    const int threshold = 255 - sensitivity;
    Filter filter;
    filter.reach = 1;
    if (mode == kByChannel) {
        filter.context = &threshold;
        filter.filterSamples = MedianSamples;
        filter.isFloatless = true;
        filter.endsAtBorder = true;
    } else {
        filter.filterPixels = MedianPixels;
        filter.wantsLuminance = true;
        filter.wantsColours = false;
        filter.result = Filter::Result::kNeighbour;
    }
    return ApplyFilter(area, filter, progress);
}

} // namespace qv8
