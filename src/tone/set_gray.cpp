#include "tone/set_gray.h"

#include <algorithm>

#include "pixels/indices.h"
#include "pixels/luminance_kernels.h"
#include "pixels/palettes.h"
#include "pixels/pixel_format.h"
#include "pixels/pixel_unit.h"
#include "pixels/planar_chunks.h"
#include "pixels/write_rows.h"

namespace qv8 {
namespace {

HGLOBAL GreyTrueColour(const DibView& source, const Progress& progress) {
    const PixelFormat format = PixelFormatOf(source);
    const LuminanceKernels& kernels = TheLuminanceKernels();
    const bool isPacked = source.layout->IsNothingButBgr();
    const auto write = [&](int row, BYTE* resultRow) {
        const BYTE* const sourceRow = source.Row(row);
        ClearPadding(source, resultRow);
        if (isPacked) {
            kernels.grey24(sourceRow, resultRow, source.width);
            return;
        }
        ForEachChunk(source.width, [&](int start, int count) {
            const std::size_t offset = format.BytesOf(start);
            PlanarChunk chunk;
            BYTE grey[kChunkPixels];
            format.Decode(sourceRow + offset, chunk.Row(), count);
            kernels.luminance(chunk.Row(), grey, count);
            ClearBeforeEncoding(format, resultRow + offset, count);
            format.Encode({grey, grey, grey}, resultRow + offset, count);
        });
    };
    return WriteRows(DuplicateDib(source, InitialPixels::kUnwritten), progress, write);
}

// The index of a grey level in a full ramp of so many entries. Of black and white the brighter half is white.
BYTE RampIndex(std::uint32_t entries, BYTE level) {
    return static_cast<BYTE>(entries == 2 ? level / 128 : level * (entries - 1) / 255);
}

// A copy of the header before a full grey ramp. A table length that says otherwise would misplace the rows.
NewPicture NewGreyRampPicture(const DibView& source) {
    const std::uint32_t paletteSize = 1U << source.bitCount;
    NewPicture result = CreateDib({source.bitCount, source.width, source.height, paletteSize}, InitialPixels::kZero);
    if (!result) {
        return result;
    }
    BITMAPINFOHEADER& header = result.Header();
    header = *source.header;
    if (header.biClrUsed != paletteSize) {
        header.biClrUsed = 0;
    }
    WriteGreyRamp(result.Palette(), static_cast<int>(paletteSize));
    return result;
}

HGLOBAL GreyPalette(const DibView& source, const Progress& progress) {
    const FullPalette palette = FullPaletteOf(source);
    BYTE newIndex[256];
    for (int i = 0; i != 256; ++i) {
        newIndex[i] = RampIndex(1U << source.bitCount, LuminanceOf(palette.colours[i]));
    }
    return WriteRows(NewGreyRampPicture(source), progress, [&](int row, BYTE* resultRow) {
        const BYTE* const sourceRow = source.Row(row);
        ForEachChunk(source.width, [&](int start, int count) {
            BYTE indices[kChunkPixels];
            UnpackIndices(source.bitCount, sourceRow, start, count, indices);
            std::transform(indices, indices + count, indices, [&](BYTE index) { return newIndex[index]; });
            PackIndices(source.bitCount, indices, count, resultRow, start);
        });
    });
}

} // namespace

HGLOBAL SetGray(HGLOBAL image, const Progress& progress) {
    Picture source;
    if (!OpenPicture(image, kAcceptAll, source)) {
        return nullptr;
    }
    return source.view.IsPaletted() ? GreyPalette(source.view, progress) : GreyTrueColour(source.view, progress);
}

} // namespace qv8
