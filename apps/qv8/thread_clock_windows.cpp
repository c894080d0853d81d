// The thread library that becomes part of the program asks for GetTickCount64, which Windows XP has not. Under the name
// by which it is imported it finds this instead.
#include <windows.h>

#include <atomic>

namespace {

std::atomic<ULONGLONG> latest{0};

// The count of 32 bits, carried on where it begins anew.
ULONGLONG WINAPI TickCount() {
    constexpr ULONGLONG kRound = ULONGLONG{1} << 32U;
    ULONGLONG before = latest;
    ULONGLONG now = 0;
    do {
        now = before / kRound * kRound + GetTickCount();
        if (now < before) {
            now += kRound;
        }
    } while (!latest.compare_exchange_weak(before, now));
    return now;
}

} // namespace

extern "C" {
extern decltype(&TickCount) const importedTickCount __asm__("__imp__GetTickCount64@0");
decltype(&TickCount) const importedTickCount = &TickCount;
}
