#include "pictures/interrupt.h"

#include <atomic>

#ifdef _WIN32
#include <qv8platform.h>
#else
#include <csignal>
#endif

#include "pictures/failure.h"
#include "pictures/temporary_file.h"

namespace {

std::atomic<bool> interruptNoted{false}; // written by a signal handler, or by a thread of the system
static_assert(std::atomic<bool>::is_always_lock_free);

#ifdef _WIN32
// The system calls this with a stack that is aligned to 4 bytes only.
QV8_REALIGN BOOL WINAPI OnConsoleEvent(DWORD event) {
    const bool first = !interruptNoted.exchange(true);
    if (first && (event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT)) {
        return TRUE;
    }
    RemoveTemporaryFiles();
    return FALSE;
}
#else
// The second one does what it would have done by itself, once this function has returned.
void OnSignal(int number) {
    if (interruptNoted.exchange(true)) {
        RemoveTemporaryFiles();
        signal(number, SIG_DFL);
        raise(number);
    }
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
        action.sa_flags = SA_RESTART;
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
