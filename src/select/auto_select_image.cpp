#include "select/auto_select_image.h"

#include "area/area_mask.h"
#include "frame/progress.h"
#include "frame/status.h"
#include "pixels/colour_reader.h"
#include "pixels/indices.h"
#include "select/cut_out.h"

namespace qv8 {
namespace {

// Matches pixels of a picture; in one with a table, only the entries are compared.
struct PixelMatcher {
    ColourMatcher colours;
    ColourReader reader;
    BYTE entryMatches[256];
};

PixelMatcher MakePixelMatcher(const DibView& source, const ColourMatcher& colours) {
    PixelMatcher matcher = {colours, MakeColourReader(source), {}};
    if (source.IsPaletted()) {
        PlanarChunk chunk;
        for (int i = 0; i != 256; ++i) {
            const RGBQUAD& colour = matcher.reader.palette.colours[i];
            chunk.blue[i] = colour.rgbBlue;
            chunk.green[i] = colour.rgbGreen;
            chunk.red[i] = colour.rgbRed;
        }
        MatchColours(colours, chunk, 256, matcher.entryMatches);
    }
    return matcher;
}

void MatchPixels(const PixelMatcher& matcher, int row, int column, int count, BYTE* matches) {
    const DibView& source = matcher.reader.picture;
    if (source.IsPaletted()) {
        BYTE indices[kChunkPixels + 8];
        const BYTE* const first = UnpackFrom(source.bitCount, source.Row(row), column, count, indices);
        for (int i = 0; i != count; ++i) {
            matches[i] = matcher.entryMatches[first[i]];
        }
        return;
    }
    PlanarChunk chunk;
    ReadColours(matcher.reader, row, column, count, chunk.Row());
    MatchColours(matcher.colours, chunk, count, matches);
}

// Marks the matching pixels of one row of the area.
void MarkRow(const PixelMatcher& matcher, const Area& area, int row, BYTE* maskRow) {
    const int width = area.rect.Width();
    ForEachChunk(width, [&](int start, int part) {
        BYTE matches[kChunkPixels];
        MatchPixels(matcher, row, area.rect.left + start, part, matches);
        PackIndices(1, matches, part, maskRow, start);
    });
    if (area.mask != nullptr) {
        const BYTE* const areaRow = area.mask + static_cast<std::size_t>(row - area.rect.firstRow) * area.maskStride;
        for (std::size_t i = 0; i != area.maskStride; ++i) {
            maskRow[i] &= areaRow[i];
        }
    }
}

} // namespace

ImageSet AutoSelectImage(const AreaArguments& areaArguments, const RGBQUAD& key, BYTE matchMode, BYTE tolerance,
                         const Progress& progress) {
    if (matchMode > static_cast<BYTE>(MatchMode::kBrightness)) {
        return Fail(QV8_STATUS_PARAMETER);
    }
    Picture source;
    Area area;
    if (!OpenPicture(areaArguments.target.hImage, kAcceptAll, source) ||
        !ResolveShape(source.view, areaArguments, area)) {
        return {};
    }
    NewPicture result = CreateCutOut(source.view, area);
    NewPicture mask;
    if (result) {
        mask = NewMask(area.rect.Width(), area.rect.Height());
    }
    if (!mask) {
        return {};
    }
    const PixelMatcher matcher =
        MakePixelMatcher(source.view, MakeColourMatcher(static_cast<MatchMode>(matchMode), key, tolerance));
    const PixelPattern nothing = {};
    for (int y = 0; y != area.rect.Height(); ++y) {
        const int row = area.rect.firstRow + y;
        CutRow(source.view, area, nothing, PixelCopy::kThroughChannels, row, result);
        MarkRow(matcher, area, row, mask.Row(y));
        if (!progress.Report(y, area.rect.Height() - 1)) {
            return {};
        }
    }
    return {result.Release(), mask.Release()};
}

} // namespace qv8
