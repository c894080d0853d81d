#include "geometry/resize_copy.h"

#include <cstring>

#include "frame/parts.h"
#include "pixels/pixel_unit.h"
#include "qv8com.h"

namespace qv8 {
namespace {

// At once, an index in each byte, before they are packed; a multiple of 8.
constexpr int kUnpackedPixels = 1024;

// Copies the mapped pixels of one row.
void CopyRow(const DibView& source, const BYTE* sourceRow, const ColumnMap& map, const NewPicture& result, BYTE* row) {
    const PixelUnit& unit = *source.layout->unit;
    if (!source.layout->SharesBytes()) {
        unit.gatherColumns(sourceRow, map.Columns(), map.count, row);
        return;
    }
    BYTE indices[kUnpackedPixels];
    ForEachPart(map.count, kUnpackedPixels, [&](int first, int count) {
        unit.gatherColumns(sourceRow, map.Columns() + first, count, indices);
        StorePixels(result.view, indices, count, row, first);
    });
}

} // namespace

bool MakeColumnMap(const ScaledSide& side, ColumnMap& map) {
    map.block = AllocateWorkingBlock(static_cast<std::uint64_t>(side.newSize) * sizeof(int));
    if (!map.block) {
        return false;
    }
    int* const columns = map.block.As<int>();
    for (int first = 0; first < side.oldSize && map.count < side.newSize;) {
        const PixelGroup group = GroupAt(side, first);
        for (int i = 0; i != group.resultCount; ++i) {
            columns[map.count++] = group.first;
        }
        first = group.next;
    }
    return true;
}

void ClearRows(const NewPicture& result, int first) {
    if (first < result.view.height) {
        std::memset(result.Row(first), 0, static_cast<std::size_t>(result.view.height - first) * result.view.stride);
    }
}

void CopyBand(const DibView& source, const NewPicture& result, const ColumnMap& map, const PixelGroup& rows) {
    if (rows.resultCount == 0) {
        return;
    }
    BYTE* const first = result.Row(rows.resultFirst);
    CopyRow(source, source.Row(rows.first), map, result, first);
    ClearBehind(result.view, map.count, first);
    for (int i = 1; i < rows.resultCount; ++i) {
        std::memcpy(result.Row(rows.resultFirst + i), first, result.view.stride);
    }
}

} // namespace qv8
