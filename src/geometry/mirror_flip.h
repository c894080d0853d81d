// Exchange of left and right, and of top and bottom, in place.
#pragma once

#include "frame/progress.h"
#include "pixels/dib.h"

namespace qv8 {

// Both work on a picture of any depth and on its mask, when there is one (null else), report each row of the picture
// and return false with status 1 or 3 set when they did not finish; the pixels are worth nothing then.
bool MirrorDib(NewPicture& picture, NewPicture* mask, const Progress& progress);
bool FlipDib(NewPicture& picture, NewPicture* mask, const Progress& progress);

enum class Exchange { kMirror, kFlip };

// Runs use(exchange, progress) for those that are wanted, mirroring first, each within its few percent of the progress,
// and leaves the rest of it in `progress`. False when one of them did not finish.
template <class Use>
bool ForEachExchange(bool mirror, bool flip, Progress& progress, Use use) {
    const int start = progress.fromPercent;
    const int end = progress.toPercent;
    for (const Exchange exchange : {Exchange::kMirror, Exchange::kFlip}) {
        if (exchange == Exchange::kMirror ? mirror : flip) {
            progress.toPercent = start + (progress.fromPercent == start ? 5 : 10);
            if (!use(exchange, progress)) {
                return false;
            }
            progress.fromPercent = progress.toPercent + 1;
        }
    }
    progress.toPercent = end;
    return true;
}

} // namespace qv8
