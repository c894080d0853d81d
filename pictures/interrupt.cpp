#include "pictures/interrupt.h"

#include <atomic>

#ifdef _WIN32
#include <qv8platform.h>
#else
#include <csignal>
#endif

#include "pictures/failure.h"

namespace {

std::atomic<bool> interruptNoted{false}; // written by a signal handler, or by a thread of the system
static_assert(std::atomic<bool>::is_always_lock_free);

#ifdef _WIN32
// The system calls this with a stack that is aligned to 4 bytes only.
QV8_REALIGN BOOL WINAPI OnConsoleEvent(DWORD event) {
    const bool first = !interruptNoted.exchange(true);
    return first && (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT);
}
#else
void OnSignal(int) {
    interruptNoted = true;
}
#endif

} // namespace

void WatchForInterrupt() {
#ifdef _WIN32
    SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
#else
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction current {};
        if (sigaction(number, nullptr, &current) == 0 && current.sa_handler == SIG_IGN) {
            continue; // whoever started this program in the background does not want it to be interrupted
        }
        struct sigaction action {};
        action.sa_handler = OnSignal;
        action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
        sigaction(number, &action, nullptr);
    }
    signal(SIGXFSZ, SIG_IGN); // a file that becomes too large is an error of writing then
#endif
}

bool Interrupted() {
    return interruptNoted;
}

void SetInterrupted(bool interrupted) {
    interruptNoted = interrupted;
}

void StopIfInterrupted() {
    if (Interrupted()) {
        throw Failure(kExitCancelled, "cancelled");
    }
}
