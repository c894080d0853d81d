// The error status that each thread keeps for the application to read.
#include "companion/entry.h"
#include "qv8com.h"
#include "qv8effect.h"

namespace {

thread_local int lastStatus = QV8_STATUS_SUCCESS;

} // namespace

extern "C" {

QV8_ENTRY void QV8API SetErrorStatus(int code) {
    lastStatus = code;
}

QV8_ENTRY int QV8API GetErrorStatus(void) {
    return lastStatus;
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
