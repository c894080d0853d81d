// The callbacks that applications have registered, each under its number.
#pragma once

#include <atomic>
#include <memory>

#include "companion/lock.h"
#include "companion/without_throwing.h"
#include "qv8com.h"

namespace qv8 {

struct ProgressOwner {
    Qv8ProgressCallback callback = nullptr;
    void* context = nullptr;
};

// May be used by several threads at once. There is a search after each row of each picture, so searching takes no lock:
// an owner stands where its number says, and a table that has become too small stays for those who still look at it.
class OwnerList {
public:
    OwnerList() = default;
    OwnerList(const OwnerList&) = delete;
    OwnerList& operator=(const OwnerList&) = delete;
    ~OwnerList() {
        const std::unique_ptr<Table> last(table_.load(std::memory_order_relaxed));
    }

    bool IsUsable() const {
        return lock_.IsUsable();
    }
    // Returns its number, or 0 when memory is short or all numbers have been given away.
    DWORD Add(const ProgressOwner& owner);
    // One without a callback when the number is not known.
    ProgressOwner Find(DWORD number) const {
        const Table* const table = table_.load(std::memory_order_acquire);
        if (table == nullptr) {
            return {};
        }
        const Entry& entry = table->At(number);
        if (entry.number.load(std::memory_order_acquire) != number) {
            return {};
        }
        const ProgressOwner owner = entry.Owner();
        return entry.number.load(std::memory_order_relaxed) == number ? owner : ProgressOwner{};
    }
    // Does nothing when the number is not known.
    void Remove(DWORD number);

private:
    // The number is stored last and taken away first: who finds the same before and after has read what belongs to it.
    struct Entry {
        std::atomic<DWORD> number = 0; // 0: free
        std::atomic<Qv8ProgressCallback> callback = nullptr;
        std::atomic<void*> context = nullptr;

        void Fill(DWORD newNumber, const ProgressOwner& owner) {
            callback.store(owner.callback, std::memory_order_release);
            context.store(owner.context, std::memory_order_release);
            number.store(newNumber, std::memory_order_release);
        }
        ProgressOwner Owner() const {
            return {callback.load(std::memory_order_acquire), context.load(std::memory_order_acquire)};
        }
    };
    struct Table : NullWhenMemoryIsShort {
        std::unique_ptr<Entry[], FreeDeleter> entries;
        DWORD capacity = 0; // a power of two
        std::unique_ptr<Table> smaller;

        Entry& At(DWORD number) const {
            return entries[number & (capacity - 1)];
        }
    };
    bool Grow();

    Lock lock_; // who changes something holds it
    std::atomic<Table*> table_ = nullptr;
    DWORD count_ = 0;
    DWORD nextNumber_ = 0x80000001; // window handles are small numbers; 0 when all numbers have been given away
};

} // namespace qv8
