// The application behind a call.
#pragma once

#include "frame/host_state.h"
#include "platform/platform.h"

namespace qv8 {

// Whom the application has named to be told of progress, and the state of the processor it wants
// back.
struct Caller {
    DWORD progressOwner = 0;
    HostState* state = nullptr; // null in the library's own tests

    // Calls what may run code of the application: callbacks, window procedures.
    template <class Callee>
    auto Call(Callee callee) const {
        return state != nullptr ? state->Call(callee) : callee();
    }
};

} // namespace qv8
