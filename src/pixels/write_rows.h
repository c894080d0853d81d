// Filling a new picture row by row.
#pragma once

#include "frame/rows.h"
#include "pixels/dib.h"

namespace qv8 {

// Runs write(row, resultRow) for every row of a new picture from the lowest on and reports each. Returns the picture,
// or 0 when there is none, because it could not be made, or when cancelled.
template <class Write>
HGLOBAL WriteRows(NewPicture result, const Progress& progress, Write write) {
    const bool done = result && ForEachRow(result.view.height, progress, [&](int row) { write(row, result.Row(row)); });
    return done ? result.Release() : nullptr;
}

} // namespace qv8
