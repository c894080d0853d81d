#include "convert/reduction.h"

#include "convert/convert_color.h"
#include "convert/mapping.h"
#include "convert/median_cut.h"
#include "convert/popularity.h"
#include "frame/rows.h"
#include "pixels/luminance_kernels.h"
#include "pixels/palettes.h"
#include "pixels/planar_chunks.h"

namespace qv8 {
namespace {

// A median cut: the histogram is gone before the pixels are mapped, the inverse map stays.
struct InverseMap {
    LockedBlock block;
};

bool FindBoxes(const ColourReader& reader, const MappingRows& rows, const NewPicture& result, InverseMap& inverseMap,
               const Progress& progress) {
    const Histogram histogram = CountColours(reader, rows.colours, progress.Slice(0, 30));
    if (!histogram.block) {
        return false;
    }
    AccumulateHistogram(histogram);
    inverseMap.block = AllocateWorkingBlock(kCells);
    if (!inverseMap.block) {
        return false;
    }
    return CutMedian(histogram, static_cast<int>(result.view.paletteSize), result.Palette(),
                     inverseMap.block.As<BYTE>(), progress);
}

ChooseBy ChoiceFor(const ReductionOptions& options) {
    switch (options.depth) {
    case 1:
        return ChooseBy::kThreshold;
    case 4:
        return ChooseBy::kNearest;
    default:
        return options.fixedPalette ? ChooseBy::kFixedLevels : ChooseBy::kInverseMap;
    }
}

// Makes the colour table, then maps the pixels over the rest of the progress.
bool ReduceInto(const DibView& source, const ReductionOptions& options, const NewPicture& result,
                const Progress& progress) {
    MappingRows rows = AllocateMappingRows(source.width);
    if (!rows.block) {
        return false;
    }
    const ColourReader reader = MakeColourReader(source);
    InverseMap inverseMap;
    int mapFrom = 0;
    if (options.fixedPalette) {
        WriteFixedPalette(options.depth, result.Palette());
    } else if (source.IsPaletted()) {
        mapFrom = 10;
        if (!PickPopular(reader, rows.colours, result.Palette(), progress)) {
            return false;
        }
    } else {
        mapFrom = 70;
        if (!FindBoxes(reader, rows, result, inverseMap, progress)) {
            return false;
        }
    }
    const Mapping mapping = {ChoiceFor(options), options.threshold, inverseMap.block.As<BYTE>(), options.dither,
                             options.fixedPalette};
    return MapColours(reader, mapping, rows, result, progress.Slice(mapFrom, 100));
}

HGLOBAL ReduceToGrey(const DibView& source, const Progress& progress) {
    NewPicture result = NewConverted(source, QV8_DEPTH_GREY, 256, 0, InitialPixels::kZero);
    if (!result) {
        return nullptr;
    }
    WriteGreyRamp(result.Palette(), 256);
    const ColourReader reader = MakeColourReader(source);
    const bool done = ForEachRow(source.height, progress, [&](int row) {
        ForEachChunk(source.width, [&](int start, int count) {
            BYTE room[3 * kChunkPixels];
            const BYTE* const pixels = Pixels24(reader, row, start, count, room);
            TheLuminanceKernels().greyLevel24(pixels, result.Row(row) + start, count);
        });
    });
    return done ? result.Release() : nullptr;
}

} // namespace

HGLOBAL ReduceColours(const DibView& source, const ReductionOptions& options, const Progress& progress) {
    if (options.depth == QV8_DEPTH_GREY) {
        return ReduceToGrey(source, progress);
    }
    ReductionOptions own = options;
    own.fixedPalette = options.fixedPalette || options.depth == 1;
    const bool is216 = own.depth == 8 && own.fixedPalette;
    const std::uint32_t paletteSize = is216 ? kMostFixedColours : 1U << own.depth;
    NewPicture result = NewConverted(source, own.depth, paletteSize, is216 ? paletteSize : 0, InitialPixels::kZero);
    return result && ReduceInto(source, own, result, progress) ? result.Release() : nullptr;
}

} // namespace qv8
