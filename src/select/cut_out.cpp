#include "select/cut_out.h"

#include <algorithm>
#include <cstring>

#include "pixels/bit_copy.h"
#include "pixels/palettes.h"
#include "pixels/planar_chunks.h"
#include "qv8com.h"

namespace qv8 {
namespace {

// 16-bit pixels through channels of 8 bits, 32-bit ones without their fourth byte.
void CopyThroughChannels(const PixelFormat& format, const BYTE* source, BYTE* result, int count) {
    PlanarChunk chunk;
    ForEachChunk(count, [&](int start, int part) {
        const std::ptrdiff_t offset = std::ptrdiff_t{start} * format.bytesPerPixel;
        if (format.bytesPerPixel == 4) {
            std::memset(result + offset, 0, static_cast<std::size_t>(part) * 4);
        }
        format.decode(format.masks, source + offset, chunk.Row(), part);
        format.encode(format.masks, chunk.Row(), result + offset, part);
    });
}

// 1 and 4 bits: the background everywhere, then the runs over it. Bits behind the last pixel are 0.
void CutPackedRow(const DibView& source, const Area& area, const PixelPattern& background, int row, BYTE* result,
                  std::size_t stride) {
    const auto depth = static_cast<std::size_t>(source.bitCount);
    const std::size_t bits = static_cast<std::size_t>(area.rect.Width()) * depth;
    std::memset(result, background.bytes[0], bits / 8);
    std::memset(result + bits / 8, 0, stride - bits / 8);
    if (bits % 8 != 0) {
        result[bits / 8] = static_cast<BYTE>(background.bytes[0] & 0xFF00U >> bits % 8);
    }
    ForEachRun(area, row, [&](int column, int count) {
        CopyBits(source.Row(row), static_cast<std::size_t>(column) * depth, result,
                 static_cast<std::size_t>(column - area.rect.left) * depth, static_cast<std::size_t>(count) * depth);
    });
}

} // namespace

bool ResolveShape(const DibView& picture, const AreaArguments& arguments, Area& area) {
    if (arguments.areaType == QV8_AREA_MASK) {
        SetErrorStatus(QV8_STATUS_PARAMETER);
        return false;
    }
    return ResolveArea(picture, nullptr, arguments, area);
}

PixelPattern BackgroundOf(const DibView& picture, const RGBQUAD& colour) {
    BYTE pixel[4];
    WritePixel(picture, colour, pixel);
    if (picture.bitCount < 8) { // a byte full of them
        pixel[0] = static_cast<BYTE>(pixel[0] * (picture.bitCount == 1 ? 0xFF : 0x11));
    }
    return RepeatPixel(pixel, std::max<std::size_t>(static_cast<std::size_t>(picture.bitCount) / 8, 1));
}

NewPicture CreateCutOut(const DibView& source, const Area& area) {
    return DuplicateDib(source, area.rect.Width(), area.rect.Height(), Pixels::kUnwritten);
}

void CutRow(const DibView& source, const Area& area, const PixelPattern& background, PixelCopy copy, int row,
            const NewPicture& result) {
    BYTE* const resultRow = result.Row(row - area.rect.firstRow);
    const std::size_t stride = result.view.stride;
    if (source.bitCount < 8) {
        CutPackedRow(source, area, background, row, resultRow, stride);
        return;
    }
    const bool exact = copy == PixelCopy::kExact || source.bitCount == 8 || source.bitCount == 24;
    const auto pixelBytes = static_cast<std::size_t>(source.bitCount / 8);
    const PixelFormat format = PixelFormatOf(source.bitCount, source.masks);
    std::size_t written = 0;
    ForEachRun(area, row, [&](int column, int count) {
        const BYTE* const pixels = source.Row(row) + static_cast<std::size_t>(column) * pixelBytes;
        const std::size_t begin = static_cast<std::size_t>(column - area.rect.left) * pixelBytes;
        const std::size_t bytes = static_cast<std::size_t>(count) * pixelBytes;
        FillPixels(background, resultRow + written, begin - written);
        if (exact) {
            std::memcpy(resultRow + begin, pixels, bytes);
        } else {
            CopyThroughChannels(format, pixels, resultRow + begin, count);
        }
        written = begin + bytes;
    });
    const std::size_t used = static_cast<std::size_t>(area.rect.Width()) * pixelBytes;
    FillPixels(background, resultRow + written, used - written);
    std::memset(resultRow + used, 0, stride - used);
}

} // namespace qv8
