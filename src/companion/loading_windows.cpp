// Loading on Windows: the slots and the lock were made before this runs, and a file without them does not load.
#include "companion/loading.h"
#include "qv8platform.h"

extern "C" QV8_REALIGN BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    return reason != DLL_PROCESS_ATTACH || (qv8::StatusIsUsable() && qv8::ProgressIsUsable()) ? TRUE : FALSE;
}
