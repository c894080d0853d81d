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

// RunFramed for the forms that store the worker's pair through a pointer, {0, 0} when it fails. Nothing is stored when
// the dialog does not open.
template <class Work>
BOOL RunFramedInto(ImageSet* result, DWORD progressOwner, const DialogArguments& dialog, Work work) {
    return RunFramed(progressOwner, dialog, [&]() -> BOOL {
        if (result == nullptr) {
            SetErrorStatus(QV8_STATUS_PARAMETER);
            return FALSE;
        }
        *result = work();
        return Succeeded(*result) ? TRUE : FALSE;
    });
}

} // namespace qv8
