#include "geometry/linear_mapping.h"

#include "frame/parts.h"
#include "frame/rows.h"
#include "geometry/blending.h"
#include "geometry/rotation_kernels.h"

namespace qv8 {
namespace {

static_assert(kPartPixels == kPlaces);

struct PictureMapping {
    TurnedPicture& image;
    TurnedPicture* mask;
    CentredRect source;
    CentredRect bounds;
    Directions directions;
    const Blending* blending; // null to copy the nearest pixel
};

// Blends `count` pixels of the result from x on, whose places are given: straight from packed pixels but at the edges
// of the source.
void BlendLine(const PictureMapping& work, const SourceLines& lines, int x, const Places& places, int count,
               BYTE* result) {
    const DibView& source = work.image.source;
    const auto blendPacked = PackedBlendOf(source);
    const Span within = blendPacked != nullptr ? PlacesWithin(source, places, count) : Span{count, count};
    if (within.begin == 0 && within.end == count) {
        blendPacked(source, places, count, result);
        return;
    }
    const auto blendPart = [&](int begin, int end, bool isPacked) {
        if (begin == end) {
            return;
        }
        Places own;
        TheRotationKernels().findNeighbours(lines, work.directions, x + begin, end - begin, own);
        BYTE* const pixels = result + work.blending->format.BytesOf(begin);
        if (isPacked) {
            blendPacked(source, own, end - begin, pixels);
        } else {
            BlendPixels(*work.blending, work.image, own, end - begin, pixels);
        }
    };
    blendPart(0, within.begin, false);
    blendPart(within.begin, within.end, true);
    blendPart(within.end, count, false);
}

// One part of a row of the result, of whose pixels those from `begin` to before `end` lie in the source.
void WriteTurned(const PictureMapping& work, const SourceLines& lines, int row, int start, int count, int begin,
                 int end) {
    const int first = std::max(begin, start);
    const int found = std::min(end, start + count) - first;
    const int x = static_cast<int>(work.bounds.firstColumn) + first;
    Places places;
    const RotationKernels& kernels = TheRotationKernels();
    if (found > 0) {
        (work.blending != nullptr ? kernels.findNeighbours : kernels.findPlaces)(lines, work.directions, x, found,
                                                                                 places);
    }
    WritePart(work.image, row, start, count, begin, end, [&](int pixels, BYTE* result) {
        if (work.blending != nullptr) {
            BlendLine(work, lines, x, places, pixels, result);
        } else {
            work.image.unit.gather(work.image.source, places.columns, places.rows, pixels, result);
        }
    });
    if (work.mask != nullptr) {
        WritePart(*work.mask, row, start, count, begin, end, [&](int pixels, BYTE* result) {
            work.mask->unit.gather(work.mask->source, places.columns, places.rows, pixels, result);
        });
    }
}

} // namespace

bool MapPicture(TurnedPicture& image, TurnedPicture* mask, const LinearMap& back, const CentredRect& bounds,
                const RotationOptions& options, const Progress& progress) {
    const CentredRect source = CentredRectOf(image.source);
    const Directions directions = Directions::Of(source, options.mirror, options.flip);
    Blending blending;
    if (options.smooth) {
        blending = BlendingOf(image, options.background);
    }
    const PictureMapping work = {image, mask, source, bounds, directions, options.smooth ? &blending : nullptr};
    const auto left = static_cast<int>(bounds.firstColumn);
    const int width = image.result.view.width;
    Span columnGuess;
    Span rowGuess;
    return ForEachRow(image.result.view.height, progress, [&](int row) {
        const SourceLines lines = SourceLinesOf(back, static_cast<int>(bounds.firstRow) + row);
        Span inside = SpanInside(lines.column, source.firstColumn, source.width, {left, left + width}, columnGuess);
        inside = SpanInside(lines.row, source.firstRow, source.height, inside, rowGuess);
        ForEachPart(width, kPartPixels, [&](int start, int count) {
            WriteTurned(work, lines, row, start, count, inside.begin - left, inside.end - left);
        });
        ClearPadding(image.result.view, image.result.Row(row));
        if (mask != nullptr) {
            ClearPadding(mask->result.view, mask->result.Row(row));
        }
    });
}

} // namespace qv8
