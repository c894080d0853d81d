// Places on a line.
#pragma once

namespace qv8 {

// From `begin` to before `end`; nothing where that is not behind.
struct Span {
    int begin = 0;
    int end = 0;

    bool IsEmpty() const {
        return begin >= end;
    }
    int Count() const {
        return end - begin;
    }
};

} // namespace qv8
