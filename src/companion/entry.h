// Marks functions that code of others calls: the exports and the window procedures.
#pragma once

#ifdef _WIN32
// 32-bit callers align the stack to 4 bytes only, our own code relies on 16.
#define QV8_ENTRY __attribute__((force_align_arg_pointer))
#else
#define QV8_ENTRY
#endif
