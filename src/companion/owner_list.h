// The callbacks that applications have registered, each under its number.
#pragma once

#include <cstddef>
#include <memory>

#include "companion/lock.h"
#include "companion/without_throwing.h"
#include "qv8com.h"

namespace qv8 {

struct ProgressOwner {
    Qv8ProgressCallback callback = nullptr;
    void* context = nullptr;
};

// May be used by several threads at once.
class OwnerList {
public:
    bool IsUsable() const {
        return lock_.IsUsable();
    }
    // Returns its number, or 0 when memory is short or all numbers have been given away.
    DWORD Add(const ProgressOwner& owner);
    // One without a callback when the number is not known.
    ProgressOwner Find(DWORD number);
    // Does nothing when the number is not known.
    void Remove(DWORD number);

private:
    struct Entry {
        DWORD number;
        ProgressOwner owner;
    };
    // Numbers rise from entry to entry, as they are given away in turn.
    Entry* Begin() const {
        return entries_.get();
    }
    Entry* End() const {
        return Begin() + count_;
    }
    Entry* At(DWORD number) const;
    bool Grow();

    Lock lock_;
    std::unique_ptr<Entry[], FreeDeleter> entries_;
    std::size_t count_ = 0;
    std::size_t capacity_ = 0;
    DWORD nextNumber_ = 0x80000001; // window handles are small numbers; 0 when all numbers have been given away
};

} // namespace qv8
