// Owners of movable global memory: a block, and the time it is locked.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "platform/platform.h"

namespace qv8 {

constexpr SIZE_T kMaxBlockBytes = 0x7FFFFFFF;

struct BlockDeleter {
    using pointer = HGLOBAL;
    void operator()(HGLOBAL block) const {
        GlobalFree(block);
    }
};

struct LockDeleter {
    HGLOBAL block = nullptr;
    void operator()(const void* /*address*/) const {
        GlobalUnlock(block);
    }
};

// Frees the block when it goes out of scope.
using GlobalBlock = std::unique_ptr<void, BlockDeleter>;

// Unlocks the block when it goes out of scope; null when the lock failed, and then nothing is unlocked.
using GlobalLockScope = std::unique_ptr<void, LockDeleter>;

inline GlobalLockScope LockBlock(HGLOBAL block) {
    return {GlobalLock(block), LockDeleter{block}};
}

// A zero-filled working block, locked for as long as it lives. Null when memory is short; no status is set.
// The order of the members matters: the lock goes before the block.
struct WorkingBlock {
    GlobalBlock block;
    GlobalLockScope lock;

    explicit operator bool() const {
        return lock != nullptr;
    }
    WorkingBlock() = default;
    WorkingBlock(WorkingBlock&& other) = default;
    WorkingBlock& operator=(WorkingBlock&& other) noexcept { // unlocked before it is freed here too
        lock = std::move(other.lock);
        block = std::move(other.block);
        return *this;
    }
    template <class Item>
    Item* As() const {
        return static_cast<Item*>(lock.get());
    }
};

inline WorkingBlock AllocateWorkingBlock(std::uint64_t bytes) {
    WorkingBlock result;
    if (bytes > kMaxBlockBytes) {
        return result;
    }
    result.block.reset(GlobalAlloc(GHND, static_cast<SIZE_T>(bytes)));
    if (result.block) {
        result.lock = LockBlock(result.block.get());
    }
    return result;
}

} // namespace qv8
