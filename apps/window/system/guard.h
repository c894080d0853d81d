// Keeps exceptions out of the system, which calls window procedures and knows none.
#ifndef QV8_WINDOW_SYSTEM_GUARD_H
#define QV8_WINDOW_SYSTEM_GUARD_H

#include <exception>

#include <qv8platform.h>

#include "system/text.h"
#include "texts.h"

// What the function returns, or 0 after it has run out of memory.
template <class Function>
LRESULT Guarded(HWND window, Function function) {
    try {
        return function();
    } catch (const std::exception&) { // failures of effects and files are shown where they happen
        MessageBoxW(window, Text(IDS_OUT_OF_MEMORY).c_str(), Text(IDS_TITLE).c_str(), MB_OK | MB_ICONERROR);
        return 0;
    }
}

#endif
