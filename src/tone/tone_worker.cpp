#include "tone/tone_worker.h"

#include <algorithm>

#include "area/area_rows.h"
#include "frame/progress.h"
#include "frame/rows.h"
#include "pixels/planar_chunks.h"

namespace qv8 {
namespace {

HGLOBAL ApplyToPalette(const DibView& source, const ToneEffect& effect, const Progress& progress) {
    NewPicture result = DuplicateDib(source, InitialPixels::kCopied);
    if (!result) {
        return nullptr;
    }
    RGBQUAD* const palette = result.Palette();
    const auto last = static_cast<int>(source.paletteSize - 1);
    for (int i = 0; i <= last; ++i) {
        const RGBQUAD before = source.palette[i];
        RGBQUAD after = effect.entry(effect.context, before);
        after.rgbReserved = before.rgbReserved;
        palette[i] = after;
        if (!progress.Report(i, last)) {
            return nullptr;
        }
    }
    return result.Release();
}

// Writes all rows, some of them at once, of a picture whose rows have no gaps between them.
template <class Write>
bool WriteGapless(const DibView& source, const NewPicture& result, const Progress& progress, Write write) {
    constexpr std::size_t kRunBytes = 16384;
    const int rowsAtOnce = static_cast<int>(std::max<std::size_t>(kRunBytes / source.stride, 1));
    return ForEachRow(source.height, progress, [&](int row) {
        if (row % rowsAtOnce == 0) {
            const int rows = std::min(rowsAtOnce, source.height - row);
            write(row, 0, rows * source.width, source.Row(row), result.Row(row));
        }
    });
}

bool IsWholeAndGapless(const DibView& source, const Area& area) {
    return area.mask == nullptr && area.rect.Width() == source.width && area.rect.Height() == source.height &&
           source.stride == static_cast<std::size_t>(source.width) * static_cast<std::size_t>(source.layout->Bytes());
}

HGLOBAL ApplyToPixels(const DibView& source, const Area& area, const ToneEffect& effect, const Progress& progress) {
    NewPicture result = DuplicateDib(source, InitialPixels::kUnwritten);
    if (!result) {
        return nullptr;
    }
    const PixelFormat format = PixelFormatOf(source);
    const auto write = [&](int /*row*/, int /*column*/, int count, const BYTE* sourcePixels, BYTE* resultPixels) {
        effect.pixels(effect.context, format, sourcePixels, resultPixels, count);
    };
    const auto writeRows = [&] {
        return IsWholeAndGapless(source, area) ? WriteGapless(source, result, progress, write)
                                               : WriteArea(source, area, result, progress, write);
    };
    const bool done = effect.isFloatless ? progress.RunWithoutFloats(writeRows) : writeRows();
    return done ? result.Release() : nullptr;
}

} // namespace

void ApplyPlanarTone(const void* context, PlanarTone tone, const PixelFormat& format, const BYTE* source, BYTE* result,
                     int count) {
    PlanarChunk chunk;
    const PlanarRow row = chunk.Row();
    ForEachChunk(count, [&](int start, int part) {
        const std::size_t offset = format.BytesOf(start);
        CopyUnused(format, source + offset, result + offset, part);
        format.Decode(source + offset, row, part);
        tone(context, row, part);
        format.Encode(row, result + offset, part);
    });
}

HGLOBAL ApplyTone(const AreaArguments& areaArguments, const ToneEffect& effect, const Progress& progress) {
    Picture source;
    if (!OpenPicture(areaArguments.target.hImage, kAcceptAll, source)) {
        return nullptr;
    }
    if (source.view.IsPaletted()) {
        return ApplyToPalette(source.view, effect, progress);
    }
    Area area;
    if (!ResolveArea(source.view, areaArguments, area)) {
        return nullptr;
    }
    return ApplyToPixels(source.view, area, effect, progress);
}

} // namespace qv8
