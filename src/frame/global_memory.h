// Owners of movable global memory: a block, and the time it is locked.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>

#include "frame/status.h"
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

// A block that is locked for as long as it is held. The order of the members matters: the lock goes before the block.
struct LockedBlock {
    GlobalBlock block;
    GlobalLockScope lock;

    LockedBlock() = default;
    LockedBlock(LockedBlock&& other) = default;
    LockedBlock& operator=(LockedBlock&& other) noexcept { // unlocked before it is freed here too
        lock = std::move(other.lock);
        block = std::move(other.block);
        return *this;
    }
    explicit operator bool() const {
        return lock != nullptr;
    }
    template <class Item>
    Item* As() const {
        return static_cast<Item*>(lock.get());
    }
    // Unlocks the block and hands it over.
    HGLOBAL Release() {
        lock.reset();
        return block.release();
    }
};

// Takes over a block, null when there was no memory for it, and locks it. Sets status 3 when it fails.
inline LockedBlock HoldBlock(HGLOBAL block) {
    LockedBlock result;
    result.block.reset(block);
    if (result.block) {
        result.lock = LockBlock(result.block.get());
    }
    if (!result) {
        return Fail(QV8_STATUS_MEMORY);
    }
    return result;
}

// A working block of zeros. Sets status 3 when it fails.
inline LockedBlock AllocateWorkingBlock(std::uint64_t bytes) {
    return HoldBlock(bytes <= kMaxBlockBytes ? GlobalAlloc(GHND, static_cast<SIZE_T>(bytes)) : nullptr);
}

} // namespace qv8
