// The error status that each thread keeps for the application to read.
#include <atomic>
#include <cstdint>

#include "companion/loading.h"
#include "companion/thread_slot.h"
#include "qv8com.h"
#include "qv8effect.h"

namespace {

// The status itself, as if it were an address, but with one bit turned: a null pointer is a thread that has none.
const qv8::ThreadSlot<void> lastStatus;
constexpr std::uint32_t kTurned = 0x80000000;

// Some thread had no memory for its first status. A thread that has none stored may be the one.
std::atomic<bool> statusWasLost = false;

} // namespace

namespace qv8 {

bool StatusIsUsable() {
    return lastStatus.IsUsable();
}

} // namespace qv8

extern "C" {

QV8_REALIGN void QV8API SetErrorStatus(int code) {
    const std::uintptr_t stored = static_cast<std::uint32_t>(code) ^ kTurned;
    if (!lastStatus.Set(reinterpret_cast<void*>(stored))) {
        statusWasLost = true;
    }
}

QV8_REALIGN int QV8API GetErrorStatus(void) {
    const auto stored = reinterpret_cast<std::uintptr_t>(lastStatus.Get());
    if (stored == 0) {
        return statusWasLost ? QV8_STATUS_MEMORY : QV8_STATUS_SUCCESS;
    }
    return static_cast<int>(static_cast<std::uint32_t>(stored) ^ kTurned);
}

QV8_REALIGN LPCSTR QV8API GetErrorStatusText(int code) {
    switch (code) {
    case QV8_STATUS_SUCCESS:
        return "success";
    case QV8_STATUS_CANCELLED:
        return "cancelled";
    case QV8_STATUS_DIALOG:
        return "the progress dialog could not be opened, or the area could not be drawn";
    case QV8_STATUS_MEMORY:
        return "out of memory";
    case QV8_STATUS_DEPTH:
        return "bit depth not handled";
    case QV8_STATUS_PARAMETER:
        return "bad parameter";
    case QV8_STATUS_PICTURE:
        return "bad picture";
    case QV8_STATUS_DRAWING:
        return "a drawing operation failed";
    default:
        return "unknown status";
    }
}

} // extern "C"
