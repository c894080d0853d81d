// Windows' memory is made the native platform's (src/platform/memory.cpp), so that the two builds differ by their code
// and not by what the systems take for blocks: freed ones are kept for the next call by the same rules, a kept one is
// cleared only where its zeros are read, and large ones lie in huge pages. The library is part of this program: the
// slots of the import table that it calls through are defined here, and so come before the system's.
#include <windows.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "blocks.h"
#include "pixels/dib.h"

namespace bench {
namespace {

constexpr SIZE_T kKeptFrom = SIZE_T{64} << 10; // smaller ones the heap keeps itself
constexpr SIZE_T kKeptLimit = SIZE_T{64} << 20;
constexpr SIZE_T kHugeFrom = SIZE_T{1} << 20;
constexpr SIZE_T kHugePage = SIZE_T{2} << 20;

struct Kept {
    HGLOBAL block;
    SIZE_T size;
};
std::vector<Kept> kept;
SIZE_T keptBytes;
bool isForOverwrite; // the block that is asked for: every byte will be written

template <class Function>
Function SystemCall(const char* library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA(library), name)));
}

// Wine gives no huge pages, and Windows has no way to ask it for them: this asks the Linux below it, whose calls 32-bit
// programs can make. Where that is not there, or declines, pages stay small.
void AskForHugePages(HGLOBAL block, SIZE_T bytes) {
#ifdef __i386__
    static const bool isWine = SystemCall<FARPROC>("ntdll.dll", "wine_get_version") != nullptr;
    if (isWine) {
        constexpr int kMadvise = 219;
        constexpr int kHugePages = 14;
        constexpr std::uintptr_t kPage = 4096;
        const auto begin = reinterpret_cast<std::uintptr_t>(GlobalLock(block));
        const std::uintptr_t firstPage = begin / kPage * kPage;
        const std::uintptr_t length = (begin + bytes - firstPage) / kPage * kPage;
        int result = kMadvise;
        asm volatile("int $0x80" : "+a"(result) : "b"(firstPage), "c"(length), "d"(kHugePages) : "memory");
        GlobalUnlock(block);
    }
#endif
}

HGLOBAL TakeKept(SIZE_T bytes) {
    for (auto it = kept.begin(); bytes >= kKeptFrom && it != kept.end(); ++it) {
        if (it->size >= bytes && it->size / 2 <= bytes) {
            const HGLOBAL block = it->block;
            keptBytes -= it->size;
            kept.erase(it);
            return block;
        }
    }
    return nullptr;
}

// Where a block is asked for, its first page is touched, which then stays small and all others before the next huge
// page with it. Large blocks are the first free addresses with room for them: those up to shortly before a huge page
// are taken for as long as the block is asked for.
HGLOBAL AllocateNew(UINT flags, SIZE_T bytes) {
    static const auto next = SystemCall<HGLOBAL(WINAPI*)(UINT, SIZE_T)>("kernel32.dll", "GlobalAlloc");
    if (bytes < kHugeFrom) {
        return next(flags, bytes);
    }
    constexpr SIZE_T kStep = SIZE_T{64} << 10; // of addresses that blocks begin at
    const SIZE_T size = (bytes + kHugePage - 1) / kHugePage * kHugePage + kStep;
    void* const room = VirtualAlloc(nullptr, size + kHugePage, MEM_RESERVE, PAGE_NOACCESS);
    VirtualFree(room, 0, MEM_RELEASE);
    const SIZE_T lead = kHugePage - kStep - reinterpret_cast<std::uintptr_t>(room) % kHugePage;
    void* const taken = lead != 0 ? VirtualAlloc(room, lead, MEM_RESERVE, PAGE_NOACCESS) : nullptr;
    const HGLOBAL block = next(flags, size);
    if (taken != nullptr) {
        VirtualFree(taken, 0, MEM_RELEASE);
    }
    if (block != nullptr) {
        AskForHugePages(block, size);
    }
    return block;
}

HGLOBAL WINAPI Allocate(UINT flags, SIZE_T bytes) {
    const HGLOBAL block = TakeKept(bytes);
    if (block == nullptr) {
        return AllocateNew(flags, bytes);
    }
    if ((flags & GMEM_ZEROINIT) != 0 && !isForOverwrite) {
        std::memset(GlobalLock(block), 0, bytes);
        GlobalUnlock(block);
    }
    return block;
}

HGLOBAL WINAPI Free(HGLOBAL block) {
    static const auto next = SystemCall<HGLOBAL(WINAPI*)(HGLOBAL)>("kernel32.dll", "GlobalFree");
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
} // extern "C"

// The linker calls the first one in the place of the library's, which has the second name then (--wrap).
#define BENCH_WRAPPED(what) "___" #what "__ZN3qv815AllocatePictureEjNS_13InitialPixelsE"
qv8::LockedBlock AllocatePicture(std::uint32_t bytes, qv8::InitialPixels pixels) asm(BENCH_WRAPPED(wrap));
qv8::LockedBlock LibraryAllocatePicture(std::uint32_t bytes, qv8::InitialPixels pixels) asm(BENCH_WRAPPED(real));

qv8::LockedBlock AllocatePicture(std::uint32_t bytes, qv8::InitialPixels pixels) {
    bench::isForOverwrite = pixels != qv8::InitialPixels::kZero;
    qv8::LockedBlock block = LibraryAllocatePicture(bytes, pixels);
    bench::isForOverwrite = false;
    return block;
}
