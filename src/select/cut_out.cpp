#include "select/cut_out.h"

#include <cstring>

#include "frame/status.h"
#include "pixels/bit_copy.h"
#include "pixels/pixel_format.h"
#include "pixels/pixel_unit.h"

namespace qv8 {
namespace {

// Pixels that share bytes: the background everywhere, then the runs over it.
void CutPackedRow(const DibView& source, const Area& area, const PixelPattern& background, int row,
                  const DibView& result, BYTE* resultRow) {
    const auto bits = static_cast<std::size_t>(source.bitCount);
    FillRow(background, result, resultRow);
    ForEachRun(area, row, [&](int column, int count) {
        CopyBits(source.Row(row), static_cast<std::size_t>(column) * bits, resultRow,
                 static_cast<std::size_t>(column - area.rect.left) * bits, static_cast<std::size_t>(count) * bits);
    });
}

} // namespace

bool ResolveShape(const DibView& picture, const AreaArguments& arguments, Area& area) {
    if (arguments.areaType == QV8_AREA_MASK) {
        return Fail(QV8_STATUS_PARAMETER);
    }
    return ResolveArea(picture, arguments, area);
}

NewPicture CreateCutOut(const DibView& source, const Area& area) {
    return DuplicateDib(source, area.rect.Width(), area.rect.Height(), InitialPixels::kUnwritten);
}

void CutRow(const DibView& source, const Area& area, const PixelPattern& background, PixelCopy copy, int row,
            const NewPicture& result) {
    BYTE* const resultRow = result.Row(row - area.rect.firstRow);
    if (source.layout->SharesBytes()) {
        CutPackedRow(source, area, background, row, result.view, resultRow);
        return;
    }
    const auto pixelBytes = static_cast<std::size_t>(source.layout->Bytes());
    std::size_t written = 0;
    ForEachRun(area, row, [&](int column, int count) {
        const BYTE* const pixels = source.Row(row) + static_cast<std::size_t>(column) * pixelBytes;
        const std::size_t begin = static_cast<std::size_t>(column - area.rect.left) * pixelBytes;
        const std::size_t bytes = static_cast<std::size_t>(count) * pixelBytes;
        FillPixels(background, resultRow + written, begin - written);
        std::memcpy(resultRow + begin, pixels, bytes);
        if (copy == PixelCopy::kThroughChannels) {
            ReduceToChannels(*source.layout, resultRow + begin, count);
        }
        written = begin + bytes;
    });
    const std::size_t used = static_cast<std::size_t>(area.rect.Width()) * pixelBytes;
    FillPixels(background, resultRow + written, used - written);
    ClearPadding(result.view, resultRow);
}

} // namespace qv8
