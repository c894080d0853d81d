#include "tone/set_gray.h"

#include <algorithm>
#include <cstring>

#include "frame/rows.h"
#include "pixels/indices.h"
#include "pixels/luminance.h"
#include "pixels/palettes.h"
#include "pixels/planar_chunks.h"

namespace qv8 {
namespace {

HGLOBAL GreyTrueColour(const DibView& source, DWORD progressOwner) {
    NewPicture result = DuplicateDib(source, source.width, source.height, Pixels::kUnwritten);
    if (!result) {
        return nullptr;
    }
    const PixelFormat format = PixelFormatOf(source.bitCount, source.masks);
    const LuminanceKernels& kernels = TheLuminanceKernels();
    const std::size_t pixelBytes =
        static_cast<std::size_t>(source.width) * static_cast<std::size_t>(format.bytesPerPixel);
    const bool done = ForEachRow(source.height, Progress{progressOwner}, [&](int row) {
        const BYTE* const sourceRow = source.Row(row);
        BYTE* const resultRow = result.Row(row);
        // Fourth bytes and padding are 0.
        const std::size_t written = format.bytesPerPixel == 4 ? 0 : pixelBytes;
        std::memset(resultRow + written, 0, source.stride - written);
        if (format.bytesPerPixel == 3 && kernels.grey24 != nullptr) {
            kernels.grey24(sourceRow, resultRow, source.width);
            return;
        }
        ForEachChunk(source.width, [&](int start, int count) {
            const std::ptrdiff_t offset = std::ptrdiff_t{start} * format.bytesPerPixel;
            PlanarChunk chunk;
            BYTE grey[kChunkPixels];
            format.decode(format.masks, sourceRow + offset, chunk.Row(), count);
            kernels.luminance(chunk.Row(), grey, count);
            format.encode(format.masks, {grey, grey, grey}, resultRow + offset, count);
        });
    });
    return done ? result.Release() : nullptr;
}

// The index of a grey level in the full ramp of a depth.
BYTE RampIndex(int bitCount, BYTE level) {
    switch (bitCount) {
    case 1:
        return level > 127 ? 1 : 0;
    case 4:
        return static_cast<BYTE>(level * 15 / 255);
    default:
        return level;
    }
}

// A copy of the header before a full grey ramp. A table length that says otherwise would misplace the rows.
NewPicture NewGreyRampPicture(const DibView& source) {
    const std::uint32_t paletteSize = 1U << source.bitCount;
    const std::size_t headerBytes = kHeaderBytes + paletteSize * sizeof(RGBQUAD);
    NewPicture result =
        AllocatePicture(DibBytes(headerBytes, source.bitCount, source.width, source.height), Pixels::kZero);
    if (!result) {
        return result;
    }
    BITMAPINFOHEADER& header = result.Header();
    header = *source.header;
    if (header.biClrUsed != paletteSize) {
        header.biClrUsed = 0;
    }
    WriteGreyRamp(result.Palette(), static_cast<int>(paletteSize));
    DescribeNew(result, paletteSize);
    return result;
}

HGLOBAL GreyPalette(const DibView& source, DWORD progressOwner) {
    NewPicture result = NewGreyRampPicture(source);
    if (!result) {
        return nullptr;
    }
    const FullPalette palette = FullPaletteOf(source);
    BYTE newIndex[256];
    for (int i = 0; i != 256; ++i) {
        newIndex[i] = RampIndex(source.bitCount, LuminanceOf(palette.colours[i]));
    }
    const bool done = ForEachRow(source.height, Progress{progressOwner}, [&](int row) {
        const BYTE* const sourceRow = source.Row(row);
        BYTE* const resultRow = result.Row(row);
        ForEachChunk(source.width, [&](int start, int count) {
            BYTE indices[kChunkPixels];
            UnpackIndices(source.bitCount, sourceRow, start, count, indices);
            std::transform(indices, indices + count, indices, [&](BYTE index) { return newIndex[index]; });
            PackIndices(source.bitCount, indices, count, resultRow, start);
        });
    });
    return done ? result.Release() : nullptr;
}

} // namespace

HGLOBAL SetGray(HGLOBAL image, DWORD progressOwner) {
    Picture source;
    if (!OpenPicture(image, kAcceptAll, source)) {
        return nullptr;
    }
    return source.view.IsPaletted() ? GreyPalette(source.view, progressOwner)
                                    : GreyTrueColour(source.view, progressOwner);
}

} // namespace qv8
