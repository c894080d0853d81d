// Writing the result of an effect that keeps the picture's size and changes the pixels of an area.
#pragma once

#include <cstring>

#include "area/area.h"
#include "frame/progress.h"

namespace qv8 {

// Copies rows `begin` to `end` - 1 to a picture of the same kind.
inline void CopyRows(const DibView& source, int begin, int end, const NewPicture& result) {
    if (begin < end) {
        std::memcpy(result.Row(begin), source.Row(begin), static_cast<std::size_t>(end - begin) * source.stride);
    }
}

// Fills a result made with InitialPixels::kUnwritten. Calls write(row, column, count, source, result) for every run of
// pixels of the area, which writes every byte of the run from its first pixel's address on; everything else is copied,
// just before or after, while the row is in the cache anyway. Reports each row of the area. False when cancelled.
template <class Write>
bool WriteArea(const DibView& source, const Area& area, const NewPicture& result, const Progress& progress,
               Write write) {
    const auto pixelBytes = static_cast<std::size_t>(source.layout->Bytes());
    const WorkRect& rect = area.rect;
    CopyRows(source, 0, rect.firstRow, result);
    for (int row = rect.firstRow; row <= rect.lastRow; ++row) {
        const BYTE* const sourceRow = source.Row(row);
        BYTE* const resultRow = result.Row(row);
        std::size_t written = 0;
        ForEachRun(area, row, [&](int column, int count) {
            const std::size_t begin = static_cast<std::size_t>(column) * pixelBytes;
            std::memcpy(resultRow + written, sourceRow + written, begin - written);
            write(row, column, count, sourceRow + begin, resultRow + begin);
            written = begin + static_cast<std::size_t>(count) * pixelBytes;
        });
        std::memcpy(resultRow + written, sourceRow + written, source.stride - written);
        if (!progress.Report(row - rect.firstRow, rect.lastRow - rect.firstRow)) {
            return false;
        }
    }
    CopyRows(source, rect.lastRow + 1, source.height, result);
    return true;
}

} // namespace qv8
