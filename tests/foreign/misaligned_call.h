// Calls a function on a stack that is aligned to 4 bytes and no more, and measures what the call does to the stack.
#pragma once

#include "qv8platform.h"

struct CallOutcome {
    DWORD eax;
    DWORD edx;
    int bytesRemoved; // of the arguments, by the function called
};

// `slots` arguments of 32 bits lie on the stack from an address that is `phase` (0, 4, 8 or 12) past a multiple of 16.
extern "C" void CallMisaligned(FARPROC function, const DWORD* arguments, int slots, int phase, CallOutcome* outcome);
