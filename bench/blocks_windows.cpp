// Freed blocks are kept for the next call by the rules of the native platform (src/platform/memory.cpp), so that the
// two builds differ by their code and not by what the system takes for fresh pages. The library is part of this
// program: the slots of the import table that it calls through are defined here, and so come before the system's.
#include <windows.h>

#include <cstring>
#include <vector>

#include "blocks.h"

namespace bench {
namespace {

constexpr SIZE_T kKeptFrom = SIZE_T{64} << 10; // smaller ones the heap keeps itself
constexpr SIZE_T kKeptLimit = SIZE_T{64} << 20;

struct Kept {
    HGLOBAL block;
    SIZE_T size;
};
std::vector<Kept> kept;
SIZE_T keptBytes;

template <class Function>
Function SystemCall(const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), name)));
}

HGLOBAL WINAPI Allocate(UINT flags, SIZE_T bytes) {
    for (auto it = kept.begin(); bytes >= kKeptFrom && it != kept.end(); ++it) {
        if (it->size >= bytes && it->size / 2 <= bytes) {
            const HGLOBAL block = it->block;
            keptBytes -= it->size;
            kept.erase(it);
            if ((flags & GMEM_ZEROINIT) != 0) {
                std::memset(GlobalLock(block), 0, bytes);
                GlobalUnlock(block);
            }
            return block;
        }
    }
    static const auto next = SystemCall<HGLOBAL(WINAPI*)(UINT, SIZE_T)>("GlobalAlloc");
    return next(flags, bytes);
}

HGLOBAL WINAPI Free(HGLOBAL block) {
    static const auto next = SystemCall<HGLOBAL(WINAPI*)(HGLOBAL)>("GlobalFree");
    const SIZE_T size = GlobalSize(block);
    if (size < kKeptFrom || size > kKeptLimit) {
        return next(block);
    }
    while (keptBytes + size > kKeptLimit) {
        keptBytes -= kept.front().size;
        next(kept.front().block);
        kept.erase(kept.begin());
    }
    kept.push_back({block, size});
    keptBytes += size;
    return nullptr;
}

} // namespace

std::size_t TakePeak() {
    return 0; // counted natively
}

} // namespace bench

extern "C" {
extern decltype(&bench::Allocate) const allocateSlot asm("__imp__GlobalAlloc@8");
extern decltype(&bench::Free) const freeSlot asm("__imp__GlobalFree@4");
decltype(&bench::Allocate) const allocateSlot = bench::Allocate;
decltype(&bench::Free) const freeSlot = bench::Free;
}
