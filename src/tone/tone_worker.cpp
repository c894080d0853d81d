#include "tone/tone_worker.h"

#include "area/area_rows.h"
#include "frame/progress.h"
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

HGLOBAL ApplyToPixels(const DibView& source, const Area& area, const ToneEffect& effect, const Progress& progress) {
    NewPicture result = DuplicateDib(source, InitialPixels::kUnwritten);
    if (!result) {
        return nullptr;
    }
    const PixelFormat format = PixelFormatOf(source);
    const auto write = [&](int /*row*/, int /*column*/, int count, const BYTE* sourcePixels, BYTE* resultPixels) {
        effect.pixels(effect.context, format, sourcePixels, resultPixels, count);
    };
    if (!WriteArea(source, area, result, progress, write)) {
        return nullptr;
    }
    return result.Release();
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
