// Loads and frees Qv8Effect.dll, and Qv8Com.dll with it, many times over with a few calls in between, and counts what
// the process has of the system before and after. The first argument is the number of cycles.
#include <windows.h>

#include <psapi.h>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

int FreeSlots() {
    std::vector<DWORD> slots;
    for (DWORD slot = TlsAlloc(); slot != TLS_OUT_OF_INDEXES; slot = TlsAlloc()) {
        slots.push_back(slot);
    }
    for (const DWORD slot : slots) {
        TlsFree(slot);
    }
    return static_cast<int>(slots.size());
}

// Registered messages, which have numbers of their own and names.
int Messages() {
    int count = 0;
    char name[8];
    for (UINT number = 0xC000; number <= 0xFFFF; ++number) {
        count += GetClipboardFormatNameA(number, name, sizeof name) > 0;
    }
    return count;
}

struct Belongings {
    int freeSlots;
    DWORD handles;
    DWORD windows; // and menus, cursors and the like
    int messages;
    bool barClass;
    SIZE_T kilobytes;
};

Belongings Count() {
    Belongings result = {};
    result.freeSlots = FreeSlots();
    GetProcessHandleCount(GetCurrentProcess(), &result.handles);
    result.windows = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
    result.messages = Messages();
    WNDCLASSA barClass;
    result.barClass = GetClassInfoA(nullptr, "msctls_progress32", &barClass) != FALSE;
    PROCESS_MEMORY_COUNTERS memory = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    result.kilobytes = memory.PagefileUsage / 1024;
    return result;
}

void Print(const char* when, const Belongings& count) {
    std::printf("%-6s %d free slots, %u handles, %u windows, %d messages, class of the bar %s, %u KB\n", when,
                count.freeSlots, static_cast<unsigned>(count.handles), static_cast<unsigned>(count.windows),
                count.messages, count.barClass ? "there" : "not there", static_cast<unsigned>(count.kilobytes));
}

template <class Function>
Function* Find(HMODULE library, const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

int WINAPI GoOn(int, void*) {
    return 1;
}

// Leaves an owner registered and a status set.
bool Cycle() {
    const HMODULE effects = LoadLibraryA("Qv8Effect.dll");
    const HMODULE companion = GetModuleHandleA("Qv8Com.dll");
    if (effects == nullptr || companion == nullptr) {
        return false;
    }
    using Create = HGLOBAL WINAPI(int, int, DWORD, DWORD, DWORD, DWORD, DWORD, DWORD_PTR, DWORD_PTR, DWORD_PTR);
    using AddOwner = DWORD WINAPI(int WINAPI(int, void*), void*);
    auto* const create = Find<Create>(effects, "QV8CreateImage");
    const DWORD owner = Find<AddOwner>(companion, "AddProgressOwner")(GoOn, nullptr);
    bool succeeded = owner != 0;
    for (const DWORD progressOwner : {DWORD{0}, owner, DWORD{0x1234}}) {
        const HGLOBAL picture = create(20, 20, 24, 1, 2, 3, progressOwner, 0, 0, 0);
        succeeded = succeeded && picture != nullptr;
        GlobalFree(picture);
    }
    FreeLibrary(effects);
    return succeeded && GetModuleHandleA("Qv8Effect.dll") == nullptr && GetModuleHandleA("Qv8Com.dll") == nullptr;
}

} // namespace

int main(int argumentCount, char** arguments) {
    const int cycles = argumentCount > 1 ? std::atoi(arguments[1]) : 1;
    for (int cycle = 0; cycle != 10; ++cycle) { // what the system keeps for itself from the first time on
        Cycle();
    }
    Count(); // which makes the system register classes of its own
    const Belongings before = Count();
    Print("before", before);
    for (int cycle = 0; cycle != cycles; ++cycle) {
        if (!Cycle()) {
            std::printf("FAILED: cycle %d, error %u\n", cycle, static_cast<unsigned>(GetLastError()));
            return 1;
        }
    }
    const Belongings after = Count();
    Print("after", after);
    const bool leftNothing = after.freeSlots == before.freeSlots && after.handles == before.handles &&
                             after.windows == before.windows && after.messages == before.messages &&
                             after.barClass == before.barClass && after.kilobytes <= before.kilobytes + 256;
    std::printf(leftNothing ? "%d cycles left nothing\n" : "FAILED: %d cycles left something\n", cycles);
    return leftNothing ? 0 : 1;
}
