// Walks over whole pictures row by row, with progress.
#pragma once

#include "frame/progress.h"

namespace qv8 {

// Runs use(row) for every row from the lowest on and reports each. False when cancelled.
template <class Use>
bool ForEachRow(int height, const Progress& progress, Use use) {
    for (int row = 0; row < height; ++row) {
        use(row);
        if (!progress.Report(row, height - 1)) {
            return false;
        }
    }
    return true;
}

} // namespace qv8
