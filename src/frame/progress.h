// Progress of a worker and the user's wish to stop.
#pragma once

#include "frame/caller.h"
#include "qv8com.h"
#include "qv8effect.h"

namespace qv8 {

// Reports to the caller within one slice of the whole work.
struct Progress {
    Caller caller;
    int fromPercent = 0;
    int toPercent = 100;

    // For a step that takes the whole from one percentage to another.
    Progress Slice(int from, int to) const {
        return {caller, from, to};
    }

    // Runs work without a floating-point number in it in the caller's own state of the processor. Its reports find that
    // in force already, which takes a quarter off the time of the fastest effects.
    template <class Work>
    auto RunWithoutFloats(Work work) const {
        return caller.Call(work);
    }

    // Tells that step `current` of `last` (both from 0) is done. False when the call is to be cancelled; the status is
    // set then, and the worker returns 0.
    bool Report(int current, int last) const {
        const int goesOn =
            caller.Call([&] { return PercentProgress(current, last, fromPercent, toPercent, caller.progressOwner); });
        if (goesOn != 0) {
            return true;
        }
        SetErrorStatus(QV8_STATUS_CANCELLED);
        return false;
    }
};

} // namespace qv8
