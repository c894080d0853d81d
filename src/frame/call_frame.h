// What every export does around its worker: dialog, worker, dialog, status.
#pragma once

#include "qv8com.h"
#include "qv8effect.h"

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

// Runs `work` and returns its result, an empty one when the dialog does not open. Sets status 0 on success, 2 without
// the dialog; any other status is the worker's.
template <class Work>
auto RunFramed(DWORD progressOwner, const DialogArguments& dialog, Work work) -> decltype(work()) {
    const bool ownDialog = progressOwner == 0;
    if (ownDialog && PercentDlgOpen(dialog.first, dialog.second, dialog.third) == 0) {
        SetErrorStatus(QV8_STATUS_DIALOG);
        return {};
    }
    const auto result = work();
    if (ownDialog) {
        PercentDlgClose();
    }
    if (Succeeded(result)) {
        SetErrorStatus(QV8_STATUS_SUCCESS);
    }
    return result;
}

// RunFramed for the forms that store the worker's pair through a pointer while the dialog is still there, {0, 0} on
// every failure. Nothing is stored before the worker has ended: the caller may keep the target in the same place.
template <class Work>
BOOL RunFramedInto(ImageSet* result, DWORD progressOwner, const DialogArguments& dialog, Work work) {
    ImageSet made = {};
    const BOOL succeeded = RunFramed(progressOwner, dialog, [&]() -> BOOL {
        if (result == nullptr) {
            SetErrorStatus(QV8_STATUS_PARAMETER);
            return FALSE;
        }
        made = work();
        *result = made;
        return Succeeded(made) ? TRUE : FALSE;
    });
    if (result != nullptr && succeeded == FALSE) { // the dialog did not open
        *result = made;
    }
    return succeeded;
}

} // namespace qv8
