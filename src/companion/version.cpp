// The version of the files that are loaded, for applications that were built beside others.
#include "qv8version.h"

extern "C" QV8_REALIGN DWORD QV8API GetQv8Version(void) {
    return QV8_VERSION_NUMBER;
}
