// Mirroring and flipping are part of the way from the result back to the source and take no pass of their own, but
// callers expect the reports of one for each.
#pragma once

#include "frame/rows.h"

namespace qv8 {

// Reports so many rows for mirroring, then for flipping, where wanted, each within its few percent of the progress, and
// leaves the rest of it in `progress`. False when cancelled.
inline bool ReportExchanges(int height, bool mirror, bool flip, Progress& progress) {
    const int start = progress.fromPercent;
    const int end = progress.toPercent;
    for (const bool isWanted : {mirror, flip}) {
        if (isWanted) {
            progress.toPercent = start + (progress.fromPercent == start ? 5 : 10);
            if (!progress.RunWithoutFloats([&] { return ForEachRow(height, progress, [](int) {}); })) {
                return false;
            }
            progress.fromPercent = progress.toPercent + 1;
        }
    }
    progress.toPercent = end;
    return true;
}

} // namespace qv8
