// What every export does around its worker: dialog, processor state, worker, dialog, status.
#pragma once

#include "frame/progress.h"

namespace qv8 {

struct DialogArguments {
    DWORD_PTR first;
    DWORD_PTR second;
    DWORD_PTR third;
};

inline bool Succeeded(HGLOBAL result) {
    return result != nullptr;
}
inline bool Succeeded(BOOL result) {
    return result != FALSE;
}
inline bool Succeeded(const ImageSet& result) {
    return result.hImage != nullptr;
}

// Runs `work` in the library's own processor state. Not inlined: its arithmetic must stay between the changes of state.
template <class Work>
[[gnu::noinline]] auto RunInOwnState(DWORD progressOwner, const Work& work) {
    HostState state;
    return work(Progress{{progressOwner, &state}});
}

// Runs work(progress) and returns its result, an empty one when the dialog does not open. Sets status 0 on success, 2
// without the dialog; any other status is the worker's.
template <class Work>
auto RunFramed(DWORD progressOwner, const DialogArguments& dialog, const Work& work) -> decltype(work(Progress())) {
    const bool ownDialog = progressOwner == 0;
    if (ownDialog && PercentDlgOpen(dialog.first, dialog.second, dialog.third) == 0) {
        SetErrorStatus(QV8_STATUS_DIALOG);
        return {};
    }
    const auto result = RunInOwnState(progressOwner, work);
    if (ownDialog) {
        PercentDlgClose();
    }
    if (Succeeded(result)) {
        SetErrorStatus(QV8_STATUS_SUCCESS);
    }
    return result;
}

// What becomes of the pair when the dialog does not open and no worker runs.
enum class UnopenedPair { kIsLeft, kIsCleared };

// RunFramed for the forms that store the worker's pair through a pointer while the dialog is still there, {0, 0} on
// every failure. Nothing is stored before the worker has ended: the caller may keep the target in the same place.
template <class Work>
BOOL RunFramedInto(ImageSet* result, UnopenedPair unopened, DWORD progressOwner, const DialogArguments& dialog,
                   const Work& work) {
    bool hasRun = false;
    const BOOL succeeded = RunFramed(progressOwner, dialog, [&](const Progress& progress) -> BOOL {
        hasRun = true;
        if (result == nullptr) {
            SetErrorStatus(QV8_STATUS_PARAMETER);
            return FALSE;
        }
        *result = work(progress);
        return Succeeded(*result) ? TRUE : FALSE;
    });
    if (!hasRun && result != nullptr && unopened == UnopenedPair::kIsCleared) {
        *result = {};
    }
    return succeeded;
}

} // namespace qv8
