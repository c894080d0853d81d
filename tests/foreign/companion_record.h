// What the other companion saw, kept by the program, which exports it under this name: the companion itself exports the
// eight functions and nothing else.
#pragma once

#include "qv8platform.h"

struct CompanionRecord {
    int dialogsOpened;
    int dialogsClosed;
    int reports;
    int foreignOwners; // reports with another owner than `expectedOwner`
    int misaligned;    // calls on a stack that is not aligned to 16 bytes
    DWORD expectedOwner;
    DWORD_PTR dialogArguments[3];
    int status;
};

constexpr char kRecordName[] = "companionRecord";
