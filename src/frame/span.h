// Places on a line.
#pragma once

#include <algorithm>
#include <cstdint>

namespace qv8 {

// From `begin` to before `end`; nothing where that is not behind.
template <class Place>
struct BasicSpan {
    Place begin = 0;
    Place end = 0;

    bool IsEmpty() const {
        return begin >= end;
    }
    Place Count() const {
        return end - begin;
    }
    // Leaves what lies from `first` to before `behind`.
    void CutTo(Place first, Place behind) {
        begin = std::max(begin, first);
        end = std::max(begin, std::min(end, behind));
    }
};

using Span = BasicSpan<int>;
using WideSpan = BasicSpan<std::int64_t>;

} // namespace qv8
