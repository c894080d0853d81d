// One progress dialog, as each platform makes it. It belongs to the thread that made it.
#pragma once

#include <memory>

#include "qv8com.h"

namespace qv8 {

struct ProgressDialog;

struct ProgressDialogDeleter {
    void operator()(ProgressDialog* dialog) const;
};

// Removes the dialog and enables its owner when it goes out of scope.
using ProgressDialogPtr = std::unique_ptr<ProgressDialog, ProgressDialogDeleter>;

// A dialog at 0 %. Null when memory is short. It may come into sight later only.
ProgressDialogPtr MakeProgressDialog(HWND owner, LPCSTR title);

// Brings the dialog to `percent` and serves the messages of the thread. Returns false once the user has cancelled.
bool ShowProgress(ProgressDialog& dialog, int percent);

// Tells the window with the given handle of progress. Returns false when it cancels, true also when it is no window.
bool TellWindow(DWORD window, int percent);

} // namespace qv8
