// How a worker ends. It returns a new picture, not locked, which belongs to the caller; or 0 with its status set: 1
// when it was cancelled, 3 when memory is short, 5 for a parameter, 7 for a picture or a mask that it does not take, on
// an area also 2 when its shape cannot be drawn. Any other status stands at the worker. Pictures that it is handed stay
// the caller's: not locked any more, and as they were.
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
