// A clipboard for systems that have none of this kind: one for the process, gone at its end. It keeps the rules of the
// platform's: one opens it at a time, and what is put on it belongs to it.
#include <mutex>
#include <thread>

#include "platform/memory.h"
#include "qv8platform.h"

namespace {

constexpr UINT kNoBlock = 0x8000;

struct Clipboard {
    std::mutex mutex;
    std::thread::id opener; // none while it is closed
    HWND window = nullptr;
    HGLOBAL dib = nullptr;

    bool IsClosed() const {
        return opener == std::thread::id();
    }
    bool IsOpenHere() const {
        return opener == std::this_thread::get_id();
    }
    void Replace(HGLOBAL data) {
        if (dib != nullptr && dib != data) {
            qv8platform::FreeBlock(dib);
        }
        dib = data;
    }
};

// Never destroyed: it may be used by destructors that run at exit.
Clipboard& TheClipboard() {
    static auto* const clipboard = new Clipboard;
    return *clipboard;
}

} // namespace

extern "C" {

QV8BOOL OpenClipboard(HWND window) {
    Clipboard& clipboard = TheClipboard();
    const std::lock_guard guard(clipboard.mutex);
    if (!clipboard.IsClosed() && (!clipboard.IsOpenHere() || clipboard.window != window)) {
        return FALSE;
    }
    clipboard.opener = std::this_thread::get_id();
    clipboard.window = window;
    return TRUE;
}

QV8BOOL CloseClipboard(void) {
    Clipboard& clipboard = TheClipboard();
    const std::lock_guard guard(clipboard.mutex);
    if (!clipboard.IsOpenHere()) {
        return FALSE;
    }
    clipboard.opener = {};
    clipboard.window = nullptr;
    return TRUE;
}

QV8BOOL EmptyClipboard(void) {
    Clipboard& clipboard = TheClipboard();
    const std::lock_guard guard(clipboard.mutex);
    if (!clipboard.IsOpenHere()) {
        return FALSE;
    }
    clipboard.Replace(nullptr);
    return TRUE;
}

HGLOBAL SetClipboardData(UINT format, HGLOBAL data) {
    Clipboard& clipboard = TheClipboard();
    const std::lock_guard guard(clipboard.mutex);
    if (!clipboard.IsOpenHere() || format != CF_DIB || GlobalFlags(data) == kNoBlock) {
        return nullptr;
    }
    clipboard.Replace(data);
    return data;
}

HGLOBAL GetClipboardData(UINT format) {
    Clipboard& clipboard = TheClipboard();
    const std::lock_guard guard(clipboard.mutex);
    return clipboard.IsOpenHere() && format == CF_DIB ? clipboard.dib : nullptr;
}

} // extern "C"
