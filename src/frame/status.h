// How a worker gives up.
#pragma once

#include "qv8com.h"
#include "qv8effect.h"

namespace qv8 {

// What a function returns that has failed: false, a null handle, an empty pair or an empty owner, as its type is.
struct Failure {
    template <class Result>
    operator Result() const {
        return Result();
    }
};

// Sets the status that tells the caller what went wrong.
inline Failure Fail(int status) {
    SetErrorStatus(status);
    return {};
}

} // namespace qv8
