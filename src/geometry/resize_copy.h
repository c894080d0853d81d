// Scaling by repeating and dropping pixels.
#pragma once

#include <algorithm>

#include "frame/progress.h"
#include "geometry/resize_groups.h"
#include "pixels/dib.h"

namespace qv8 {

// The source column of every new column that has one, from the first on.
struct ColumnMap {
    LockedBlock block;
    int count = 0;

    const int* Columns() const {
        return block.As<int>();
    }
};

// False when memory is short; sets status 3.
bool MakeColumnMap(const ScaledSide& side, ColumnMap& map);

// Zeroes the rows from `first` on.
void ClearRows(const NewPicture& result, int first);

// Fills the block of rows of a group with the pixels of its first row.
void CopyBand(const DibView& source, const NewPicture& result, const ColumnMap& map, const PixelGroup& rows);

// A picture to scale, and its mask when there is one, whose pixels are copied in step.
struct ResizeTask {
    const DibView* source;
    const DibView* mask; // null without one
    const NewPicture* result;
    const NewPicture* resultMask;
    ScaledSide columns;
    ScaledSide rows;
    ColumnMap map;
};

// Runs use(rows) for every group of rows, which writes its rows, copies the mask and reports progress; zeroes the rows
// without a source. False when cancelled.
template <class Use>
bool ForEachBand(const ResizeTask& task, const Progress& progress, Use use) {
    int written = 0;
    for (int first = 0; first < task.rows.oldSize;) {
        const PixelGroup rows = GroupAt(task.rows, first);
        use(rows);
        if (task.mask != nullptr) {
            CopyBand(*task.mask, *task.resultMask, task.map, rows);
        }
        if (!progress.Report(first, task.rows.oldSize - 1)) {
            return false;
        }
        first = rows.next;
        written = std::max(written, rows.resultFirst + rows.resultCount);
    }
    ClearRows(*task.result, written);
    if (task.mask != nullptr) {
        ClearRows(*task.resultMask, written);
    }
    return true;
}

} // namespace qv8
