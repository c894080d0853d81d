// Several arrays in one working block: counted first, then handed out.
#pragma once

#include "frame/global_memory.h"

namespace qv8 {

class BlockParts {
public:
    static constexpr std::uint64_t kAlignment = 64;

    static constexpr std::uint64_t Aligned(std::uint64_t bytes) {
        return (bytes + kAlignment - 1) / kAlignment * kAlignment;
    }

    // Without a base nothing is handed out, only counted.
    explicit BlockParts(BYTE* base) : base_(base) {}

    // The next array, its address a multiple of the alignment.
    template <class Item>
    void Take(Item*& part, std::uint64_t count) {
        part = base_ != nullptr ? reinterpret_cast<Item*>(base_ + bytes_) : nullptr;
        bytes_ += Aligned(count * sizeof(Item));
    }
    std::uint64_t Bytes() const {
        return bytes_;
    }

private:
    BYTE* base_;
    std::uint64_t bytes_ = 0;
};

// Allocates what layOut(parts) takes, which is called twice. Sets status 3 when it fails.
template <class LayOut>
LockedBlock AllocateParts(LayOut layOut) {
    BlockParts count(nullptr);
    layOut(count);
    LockedBlock block = AllocateWorkingBlock(count.Bytes() + BlockParts::kAlignment);
    if (block) {
        BYTE* const base = block.As<BYTE>();
        BlockParts parts(base +
                         (BlockParts::kAlignment - reinterpret_cast<std::uintptr_t>(base) % BlockParts::kAlignment));
        layOut(parts);
    }
    return block;
}

} // namespace qv8
