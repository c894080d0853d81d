#include "compose/paste_pixels.h"

#include <algorithm>
#include <cstring>

#include "area/area.h"
#include "compose/layer_kernels.h"
#include "frame/parts.h"
#include "geometry/blending.h"
#include "pixels/bit_copy.h"
#include "pixels/indices.h"
#include "pixels/planar_chunks.h"

namespace qv8 {
namespace {

// Up to kPlaces pixels of a row of the base.
struct Part {
    int row;
    int column;
    int count;
};

// Pixels of the pasted picture.
struct Samples {
    BYTE pixels[kPlaces * 4]; // as they were copied
    PlanarChunk colours;
    BYTE isSeen[kPlaces]; // 1, or 0 where the mask or the transparent colour lets the base show
};

// Fills `samples` by copy(picture, unit, result), which copies the pixels of the picture or its mask.
template <class Copy>
void TakeSamples(const Pasting& pasting, int count, Samples& samples, Copy copy) {
    copy(pasting.pasted.picture, pasting.unit, samples.pixels);
    if (pasting.mask != nullptr) {
        copy(*pasting.mask, pasting.maskUnit, samples.isSeen);
    } else {
        std::memset(samples.isSeen, 1, kPlaces);
    }
    const TransparentColour clear = pasting.transparent;
    if (pasting.copies && !clear.isGiven) {
        return;
    }
    const PlanarRow colours = samples.colours.Row();
    DecodePixels(pasting.pasted, samples.pixels, count, colours);
    for (int i = 0; clear.isGiven && i < count; ++i) {
        const bool isClear =
            colours.red[i] == clear.red && colours.green[i] == clear.green && colours.blue[i] == clear.blue;
        samples.isSeen[i] = isClear ? 0 : samples.isSeen[i];
    }
}

// Samples at places of which some may be outside: those are not seen.
void TakeSamplesWithin(const Pasting& pasting, const int* columns, const int* rows, int count, Samples& samples) {
    ClampedPlaces places;
    ClampPlaces(pasting.pasted.picture, columns, rows, count, places);
    TakeSamples(pasting, count, samples, [&](const DibView& from, const PixelUnit& unit, BYTE* result) {
        unit.gather(from, places.columns, places.rows, count, result);
    });
    for (int i = 0; i < count; ++i) {
        samples.isSeen[i] = static_cast<BYTE>(samples.isSeen[i] & places.wereInside[i]);
    }
}

// Samples beside others. Where nothing is seen of them they get the base's colours.
void TakeNeighbours(const Pasting& pasting, const int* columns, const int* rows, int count, const PlanarChunk& ground,
                    Samples& samples) {
    if (AreInside(pasting.pasted.picture, columns, rows, count)) {
        TakeSamples(pasting, count, samples, [&](const DibView& from, const PixelUnit& unit, BYTE* result) {
            unit.gather(from, columns, rows, count, result);
        });
        if (pasting.mask == nullptr && !pasting.transparent.isGiven) {
            return;
        }
    } else {
        TakeSamplesWithin(pasting, columns, rows, count, samples);
    }
    const PlanarRow colours = samples.colours.Row();
    for (int i = 0; i < count; ++i) {
        const bool isSeen = samples.isSeen[i] != 0;
        colours.blue[i] = isSeen ? colours.blue[i] : ground.blue[i];
        colours.green[i] = isSeen ? colours.green[i] : ground.green[i];
        colours.red[i] = isSeen ? colours.red[i] : ground.red[i];
    }
}

// Blends samples with their neighbours, at an edge of what is seen with the base.
void BlendNeighbours(const Pasting& pasting, const Places& places, int count, const PlanarChunk& ground,
                     Samples& samples) {
    Samples beside;
    Samples above;
    Samples diagonal;
    TakeNeighbours(pasting, places.nextColumns, places.rows, count, ground, beside);
    TakeNeighbours(pasting, places.columns, places.nextRows, count, ground, above);
    TakeNeighbours(pasting, places.nextColumns, places.nextRows, count, ground, diagonal);
    const auto blend = [&](BYTE(PlanarChunk::*channel)[kChunkPixels]) {
        BYTE* const levels = samples.colours.*channel;
        TheRotationKernels().blend(places, levels, beside.colours.*channel, above.colours.*channel,
                                   diagonal.colours.*channel, count, levels);
    };
    blend(&PlanarChunk::blue);
    blend(&PlanarChunk::green);
    blend(&PlanarChunk::red);
}

// Lays colours over those of the base.
void ApplyOpacity(const Pasting& pasting, int count, const PlanarChunk& colours, PlanarChunk& ground) {
    const auto blend = TheLayerKernels().blendLevels;
    blend(pasting.opacity, colours.blue, ground.blue, count);
    blend(pasting.opacity, colours.green, ground.green, count);
    blend(pasting.opacity, colours.red, ground.red, count);
}

// Writes the indices nearest to the colours.
bool StoreNearest(Pasting& pasting, const PlanarRow& colours, int count, BYTE* resultRow, int column) {
    BYTE indices[kPlaces];
    for (int i = 0; i < count; ++i) {
        if (!FindNearest(pasting.nearest, colours.red[i], colours.green[i], colours.blue[i], indices[i])) {
            return false;
        }
    }
    BYTE packed[kPlaces];
    const int bitCount = pasting.base.picture.bitCount;
    PackIndices(bitCount, indices, count, packed, 0);
    const auto bits = static_cast<std::size_t>(bitCount);
    CopyBits(packed, 0, resultRow, static_cast<std::size_t>(column) * bits, static_cast<std::size_t>(count) * bits);
    return true;
}

// Stores pixels from `begin` to before `end`, all of them seen, in these colours.
bool StoreRun(Pasting& pasting, const Part& part, int begin, int end, const Samples& samples, PlanarChunk& shown,
              BYTE* resultRow) {
    const PlanarRow colours = shown.Row().From(begin);
    if (pasting.base.picture.IsPaletted()) {
        return StoreNearest(pasting, colours, end - begin, resultRow, part.column + begin);
    }
    const PixelFormat& format = pasting.base.format;
    BYTE* const result = resultRow + format.BytesOf(part.column + begin);
    if (pasting.copies) {
        std::memcpy(result, samples.pixels + format.BytesOf(begin), format.BytesOf(end - begin));
    } else {
        format.Encode(colours, result, end - begin);
    }
    return true;
}

bool PastePart(Pasting& pasting, const Part& part, BYTE* resultRow) {
    const PastePlacement& placement = pasting.placement;
    Places places;
    FindPastePlaces(placement, part.row, part.column, part.count, pasting.smooth, places);
    Samples samples;
    TakeSamples(pasting, part.count, samples, [&](const DibView& picture, const PixelUnit& unit, BYTE* result) {
        CopyPastePixels(placement, places, picture, unit, part.count, result);
    });
    PlanarChunk ground;
    PlanarChunk* shown = &samples.colours;
    if (pasting.smooth || pasting.opacity != 255) {
        ReadColours(pasting.base, part.row, part.column, part.count, ground.Row());
        if (pasting.smooth) {
            BlendNeighbours(pasting, places, part.count, ground, samples);
        }
        if (pasting.opacity != 255) {
            ApplyOpacity(pasting, part.count, samples.colours, ground);
            shown = &ground;
        }
    }
    BYTE seen[kPlaces / 8];
    PackIndices(1, samples.isSeen, part.count, seen, 0);
    for (int begin = 0, end = 0; NextRun(seen, part.count, begin, end); begin = end) {
        if (!StoreRun(pasting, part, begin, end, samples, *shown, resultRow)) {
            return false;
        }
    }
    return true;
}

// Lays packed pixels of 24 bits over those of the base.
void LayPacked(const Pasting& pasting, const BYTE* pixels, int count, BYTE* result) {
    if (pasting.opacity == 255) {
        std::memcpy(result, pixels, static_cast<std::size_t>(count) * 3);
    } else {
        TheLayerKernels().blendLevels(pasting.opacity, pixels, result, count * 3);
    }
}

// As PastePart, where pixels are blended from the bytes of the picture. Those at its edges go the other way.
bool PasteBlended(Pasting& pasting, const Part& part, BYTE* resultRow) {
    Places places;
    FindPastePlaces(pasting.placement, part.row, part.column, part.count, true, places);
    const DibView& picture = pasting.pasted.picture;
    const Span within = PlacesWithin(picture, places, part.count);
    const int count = within.Count();
    if (count < part.count && count != 0) {
        FindPastePlaces(pasting.placement, part.row, part.column + within.begin, count, true, places);
    }
    if (count != 0) {
        BYTE pixels[kPlaces * 3];
        PackedBlendOf(picture)(picture, places, count, pixels);
        LayPacked(pasting, pixels, count, resultRow + std::ptrdiff_t{part.column + within.begin} * 3);
    }
    return (within.begin == 0 || PastePart(pasting, {part.row, part.column, within.begin}, resultRow)) &&
           (within.end == part.count ||
            PastePart(pasting, {part.row, part.column + within.end, part.count - within.end}, resultRow));
}

} // namespace

void PasteLine(const Pasting& pasting, const PasteLines& lines, int row, BYTE* resultRow) {
    const int sourceRow = lines.firstRow + (row - lines.rows.begin) * lines.rowStep;
    LayPacked(pasting, pasting.pasted.picture.Row(sourceRow) + std::ptrdiff_t{lines.firstColumn} * 3,
              lines.columns.Count(), resultRow + std::ptrdiff_t{lines.columns.begin} * 3);
}

bool PastePixels(Pasting& pasting, int row, const Span& columns, BYTE* resultRow) {
    const auto paste = pasting.packs && pasting.smooth ? PasteBlended : PastePart;
    bool isDone = true;
    ForEachPart(columns.Count(), kPlaces, [&](int start, int count) {
        isDone = isDone && paste(pasting, {row, columns.begin + start, count}, resultRow);
    });
    return isDone;
}

} // namespace qv8
