#include "companion/owner_list.h"

#include <algorithm>

namespace qv8 {

// The entry with this number; the end when there is none.
OwnerList::Entry* OwnerList::At(DWORD number) const {
    Entry* const found = std::lower_bound(Begin(), End(), number,
                                          [](const Entry& entry, DWORD wanted) { return entry.number < wanted; });
    return found != End() && found->number == number ? found : End();
}

bool OwnerList::Grow() {
    const std::size_t capacity = std::max<std::size_t>(2 * capacity_, 16);
    auto* const moved = static_cast<Entry*>(std::malloc(capacity * sizeof(Entry)));
    if (moved == nullptr) {
        return false;
    }
    std::copy(Begin(), End(), moved);
    entries_.reset(moved);
    capacity_ = capacity;
    return true;
}

DWORD OwnerList::Add(const ProgressOwner& owner) {
    const LockScope scope(lock_);
    if (nextNumber_ == 0 || (count_ == capacity_ && !Grow())) {
        return 0;
    }
    entries_[count_++] = {nextNumber_, owner};
    return nextNumber_++;
}

ProgressOwner OwnerList::Find(DWORD number) {
    const LockScope scope(lock_);
    const Entry* const found = At(number);
    return found != End() ? found->owner : ProgressOwner{};
}

void OwnerList::Remove(DWORD number) {
    const LockScope scope(lock_);
    Entry* const found = At(number);
    if (found != End()) {
        std::copy(found + 1, End(), found);
        --count_;
    }
}

} // namespace qv8
