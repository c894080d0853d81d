// Working through a run in parts.
#pragma once

#include <algorithm>

namespace qv8 {

// Runs use(start, count) over 0..total in parts of `size`, the last one shorter. Totals may be as large as an int is.
template <class Use>
void ForEachPart(int total, int size, Use use) {
    for (int start = 0; start < total;) {
        const int count = std::min(size, total - start);
        use(start, count);
        start += count;
    }
}

} // namespace qv8
