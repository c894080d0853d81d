// Movable global memory for systems that have none.
//
// A handle is a number that is never used twice and is never an address, so a freed handle, a plain pointer or noise is
// told from a live block by looking it up, in the place of a table that the number itself names. Small blocks come from
// the heap. Large ones are mapped in huge pages, because touching fresh 4 KiB pages costs more than most effects; a few
// of them are kept when freed, since a program that applies effects asks for blocks of the same size again and again.
#include <sys/mman.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <vector>

#include "platform/memory.h"
#include "qv8platform.h"

namespace {

#if defined(__SANITIZE_ADDRESS__)
#define QV8_EXACT_BLOCKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QV8_EXACT_BLOCKS 1
#endif
#endif

constexpr SIZE_T kMaxBlock = 0x7FFFFFFF;
constexpr SIZE_T kHugePage = SIZE_T{2} << 20;
#ifdef QV8_EXACT_BLOCKS
constexpr SIZE_T kMappedFrom = kMaxBlock + 1; // every block from the heap, where reading past its end is noticed
constexpr SIZE_T kHeapSlack = 0;
#else
constexpr SIZE_T kMappedFrom = SIZE_T{1} << 20;
constexpr SIZE_T kHeapSlack = 64;
#endif
constexpr SIZE_T kKeptLimit = SIZE_T{64} << 20;
// Where a block begins in a cache line: behind a 40-byte header, the pixels begin on the next one then.
constexpr SIZE_T kLine = 64;
constexpr SIZE_T kLead = kLine - sizeof(BITMAPINFOHEADER);

struct Mapping {
    BYTE* address = nullptr;
    SIZE_T capacity = 0;
    bool isUsed = false; // else the system has cleared it
};

struct Block {
    uintptr_t handle = 0; // 0: a place of the table without a block
    BYTE* address = nullptr;
    SIZE_T size = 0;
    SIZE_T capacity = 0;  // of the mapping; 0 for a block from the heap
    void* heap = nullptr; // what the heap gave
    UINT locks = 0;
};

SIZE_T RoundUp(SIZE_T value, SIZE_T unit) {
    return (value + unit - 1) / unit * unit;
}

// A mapping that begins on a huge page, so that the system can use huge pages from the first byte on.
Mapping MapAligned(SIZE_T size) {
    const SIZE_T capacity = RoundUp(size, kHugePage);
    void* const raw = mmap(nullptr, capacity + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (raw == MAP_FAILED) {
        return {};
    }
    BYTE* const begin = static_cast<BYTE*>(raw);
    const SIZE_T lead = RoundUp(reinterpret_cast<uintptr_t>(begin), kHugePage) - reinterpret_cast<uintptr_t>(begin);
    if (lead != 0) {
        munmap(begin, lead);
    }
    munmap(begin + lead + capacity, kHugePage - lead);
#ifdef MADV_HUGEPAGE
    madvise(begin + lead, capacity, MADV_HUGEPAGE);
#endif
    return {begin + lead, capacity, false};
}

// The place in a block from the heap where the caller's begins.
BYTE* InLine(BYTE* heap) {
    if (heap == nullptr || kHeapSlack == 0) {
        return heap;
    }
    return heap + (kLine + kLead - reinterpret_cast<uintptr_t>(heap) % kLine) % kLine;
}

class Memory {
public:
    Memory() {
        kept_.reserve(kKeptLimit / kHugePage); // freeing never needs memory
    }

    HGLOBAL Allocate(UINT flags, SIZE_T size) {
        const bool clear = (flags & GMEM_ZEROINIT) != 0;
        Block block;
        block.size = size;
        if (size >= kMappedFrom) {
            const Mapping mapping = TakeMapping(size + kLead);
            block.capacity = mapping.capacity;
            if (mapping.address != nullptr) {
                block.address = mapping.address + kLead;
                if (clear && mapping.isUsed) {
                    std::memset(block.address, 0, size);
                }
            }
        } else if (size != 0) {
            block.heap = clear ? std::calloc(1, size + kHeapSlack) : std::malloc(size + kHeapSlack);
            block.address = InLine(static_cast<BYTE*>(block.heap));
#ifdef QV8_EXACT_BLOCKS
            if (!clear && block.address != nullptr) {
                std::memset(block.address, 0xCD, size); // a byte that nobody writes shows in the result
            }
#endif
        }
        if (size != 0 && block.address == nullptr) {
            return nullptr;
        }
        const std::lock_guard guard(mutex_);
        if (count_ > lastPlace_ / 2 && !Grow()) {
            Release(block);
            return nullptr;
        }
        do { // a number whose place is taken is passed over
            nextHandle_ += kHandleStep;
        } while (Place(nextHandle_).handle != 0);
        block.handle = nextHandle_;
        Place(nextHandle_) = block;
        ++count_;
        return reinterpret_cast<HGLOBAL>(nextHandle_);
    }

    HGLOBAL Free(HGLOBAL handle) {
        const std::lock_guard guard(mutex_);
        Block* const found = Find(handle);
        if (found == nullptr) {
            return handle;
        }
        Release(*found);
        *found = {};
        --count_;
        return nullptr;
    }

    // Calls `use` with the live block of the handle, or returns `otherwise`.
    template <class Result, class Use>
    Result With(HGLOBAL handle, Result otherwise, Use use) {
        const std::lock_guard guard(mutex_);
        Block* const found = Find(handle);
        return found == nullptr ? otherwise : use(*found);
    }

    // Looks at all blocks, for hardly anybody asks.
    HGLOBAL HandleOf(const void* address) {
        const std::lock_guard guard(mutex_);
        const auto found = std::find_if(places_.begin(), places_.end(), [address](const Block& block) {
            return address != nullptr && block.address == address;
        });
        return found == places_.end() ? nullptr : reinterpret_cast<HGLOBAL>(found->handle);
    }

private:
    // Odd multiples of two in low memory: nothing is ever mapped there, and no two handles are alike.
    static constexpr uintptr_t kHandleStep = 4;

    Block& Place(uintptr_t handle) {
        return places_[handle / kHandleStep & lastPlace_];
    }

    Block* Find(HGLOBAL handle) {
        const auto number = reinterpret_cast<uintptr_t>(handle);
        return number != 0 && Place(number).handle == number ? &Place(number) : nullptr;
    }

    // Blocks that do not share a place do not share one in a table twice as large either.
    bool Grow() {
        try {
            std::vector<Block> smaller(2 * places_.size());
            smaller.swap(places_);
            lastPlace_ = places_.size() - 1;
            for (const Block& block : smaller) {
                if (block.handle != 0) {
                    Place(block.handle) = block;
                }
            }
            return true;
        } catch (const std::bad_alloc&) {
            return false;
        }
    }

    Mapping TakeMapping(SIZE_T size) {
        {
            const std::lock_guard guard(mutex_);
            for (auto it = kept_.begin(); it != kept_.end(); ++it) {
                if (it->capacity >= size && it->capacity / 2 <= size) {
                    const Mapping kept = *it;
                    keptBytes_ -= kept.capacity;
                    kept_.erase(it);
                    return kept;
                }
            }
        }
        return MapAligned(size);
    }

    void Release(const Block& block) {
        if (block.capacity == 0) {
            std::free(block.heap);
            return;
        }
        BYTE* const mapping = block.address - kLead;
        if (block.capacity > kKeptLimit) {
            munmap(mapping, block.capacity);
            return;
        }
        while (keptBytes_ + block.capacity > kKeptLimit) { // the oldest go: their size is the least likely to be wanted
            munmap(kept_.front().address, kept_.front().capacity);
            keptBytes_ -= kept_.front().capacity;
            kept_.erase(kept_.begin());
        }
        kept_.push_back({mapping, block.capacity, true});
        keptBytes_ += block.capacity;
    }

    std::mutex mutex_;
    SIZE_T lastPlace_ = 63;
    std::vector<Block> places_ = std::vector<Block>(lastPlace_ + 1); // a power of two, of which half are taken at most
    SIZE_T count_ = 0;
    std::vector<Mapping> kept_;
    SIZE_T keptBytes_ = 0;
    uintptr_t nextHandle_ = 2;
};

// Never destroyed: blocks may be freed by destructors that run at exit.
Memory& TheMemory() {
    static auto* const memory = new Memory;
    return *memory;
}

} // namespace

void qv8platform::FreeBlock(HGLOBAL block) {
    TheMemory().Free(block);
}

extern "C" {

HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes) {
    if ((flags & GMEM_MOVEABLE) == 0 || bytes > kMaxBlock) {
        return nullptr;
    }
    return TheMemory().Allocate(flags, bytes);
}

void* GlobalLock(HGLOBAL block) {
    return TheMemory().With<void*>(block, nullptr, [](Block& live) -> void* {
        live.locks += live.address != nullptr ? 1 : 0;
        return live.address;
    });
}

QV8BOOL GlobalUnlock(HGLOBAL block) {
    return TheMemory().With<QV8BOOL>(block, FALSE, [](Block& live) -> QV8BOOL {
        live.locks -= live.locks != 0 ? 1 : 0;
        return live.locks != 0 ? TRUE : FALSE;
    });
}

HGLOBAL GlobalFree(HGLOBAL block) {
    return TheMemory().Free(block);
}

SIZE_T GlobalSize(HGLOBAL block) {
    return TheMemory().With<SIZE_T>(block, 0, [](const Block& live) { return live.size; });
}

HGLOBAL GlobalHandle(const void* address) {
    return TheMemory().HandleOf(address);
}

UINT GlobalFlags(HGLOBAL block) {
    return TheMemory().With<UINT>(block, 0x8000, [](const Block& live) { return live.locks & 0xFFU; });
}

} // extern "C"
