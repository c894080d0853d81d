// The error status that each thread keeps for the application to read.
#include <cstdint>

#include "companion/entry.h"
#include "companion/thread_slot.h"
#include "qv8com.h"
#include "qv8effect.h"

namespace {

// The status itself, as if it were an address: success is a null pointer.
const qv8::ThreadSlot<void> lastStatus;
static_assert(QV8_STATUS_SUCCESS == 0);

} // namespace

extern "C" {

QV8_ENTRY void QV8API SetErrorStatus(int code) {
    lastStatus.Set(reinterpret_cast<void*>(static_cast<std::intptr_t>(code)));
}

QV8_ENTRY int QV8API GetErrorStatus(void) {
    return static_cast<int>(reinterpret_cast<std::intptr_t>(lastStatus.Get()));
}

QV8_ENTRY LPCSTR QV8API GetErrorStatusText(int code) {
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
