#include "companion/owner_list.h"

#include <algorithm>

namespace qv8 {

// Owners that do not share a place do not share one in a table twice as large either.
bool OwnerList::Grow() {
    std::unique_ptr<Table> table(new Table);
    if (!table) {
        return false;
    }
    Table* const smaller = table_.load(std::memory_order_relaxed);
    table->capacity = smaller != nullptr ? 2 * smaller->capacity : 16;
    table->entries.reset(static_cast<Entry*>(std::malloc(table->capacity * sizeof(Entry))));
    if (!table->entries) {
        return false;
    }
    std::uninitialized_value_construct_n(table->entries.get(), table->capacity);
    if (smaller != nullptr) {
        std::for_each_n(smaller->entries.get(), smaller->capacity, [&](const Entry& entry) {
            const DWORD number = entry.number.load(std::memory_order_relaxed);
            if (number != 0) {
                table->At(number).Fill(number, entry.Owner());
            }
        });
    }
    table->smaller.reset(smaller);
    table_.store(table.release(), std::memory_order_release);
    return true;
}

// A number whose place is taken is passed over.
DWORD OwnerList::Add(const ProgressOwner& owner) {
    const LockScope scope(lock_);
    const Table* const table = table_.load(std::memory_order_relaxed);
    if ((table == nullptr || count_ == table->capacity / 2) && !Grow()) {
        return 0;
    }
    while (nextNumber_ != 0) {
        const DWORD number = nextNumber_++;
        Entry& entry = table_.load(std::memory_order_relaxed)->At(number);
        if (entry.number.load(std::memory_order_relaxed) == 0) {
            entry.Fill(number, owner);
            ++count_;
            return number;
        }
    }
    return 0;
}

void OwnerList::Remove(DWORD number) {
    const LockScope scope(lock_);
    const Table* const table = table_.load(std::memory_order_relaxed);
    if (table != nullptr && number != 0) {
        Entry& entry = table->At(number);
        if (entry.number.load(std::memory_order_relaxed) == number) {
            entry.number.store(0, std::memory_order_relaxed);
            --count_;
        }
    }
}

} // namespace qv8
