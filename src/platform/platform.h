// The platform as the library sees it: <windows.h> on Windows; elsewhere the same names, carried out in this folder.
#pragma once

#include "qv8platform.h"

#ifndef _WIN32
#include "platform/drawing.h"
#endif

// A movable block whose every byte the caller will write. Windows hands out cleared memory in any case; our own memory
// saves the clearing, which costs more than most effects.
inline HGLOBAL AllocateForOverwrite(SIZE_T bytes) {
#ifdef _WIN32
    return GlobalAlloc(GHND, bytes);
#else
    return GlobalAlloc(GMEM_MOVEABLE, bytes);
#endif
}
