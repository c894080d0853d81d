// The progress dialog on Windows: a modeless dialog with a bar and a Cancel button, made without resources.
#include <windows.h>

#include <commctrl.h>

#include <string>

#include "companion/dialog.h"
#include "companion/entry.h"

namespace qv8 {

struct ProgressDialog {
    HWND window = nullptr; // null again when others have destroyed it
    HWND bar = nullptr;
    HWND disabledOwner = nullptr; // the window to be enabled at the end; null when it was disabled before
    std::string caption;          // the title and, behind it, the percentage
    std::size_t titleLength = 0;
    int percent = -1;
    DWORD servedAt = 0;
    bool cancelled = false;
};

namespace {

constexpr DWORD kServeEvery = 10; // milliseconds; a row may take a microsecond
constexpr int kMostMessages = 100;
constexpr UINT kAnswerWithin = 2000; // milliseconds
constexpr std::size_t kPercentLength = sizeof " 100 %";

// A dialog without controls; they are added once its font is known. Sizes are in dialog units.
struct EmptyDialog {
    DLGTEMPLATE dialog;
    WORD menu;
    WORD windowClass;
    WORD title;
    WORD fontSize;
    WCHAR font[sizeof "MS Shell Dlg"];
};

alignas(4) constexpr EmptyDialog kEmptyDialog = {
    {WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME | DS_SETFONT | DS_CENTER, 0, 0, 0, 0, 200, 48},
    0,
    0,
    0,
    8,
    L"MS Shell Dlg"};
constexpr RECT kBarPlace = {8, 8, 192, 20};
constexpr RECT kCancelPlace = {75, 27, 125, 41};

QV8_ENTRY INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM) {
    auto* const dialog = reinterpret_cast<ProgressDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (dialog == nullptr) {
        return FALSE;
    }
    switch (message) {
    case WM_COMMAND: // from the button, and from the Esc key
        if (LOWORD(wParam) != IDCANCEL) {
            return FALSE;
        }
        dialog->cancelled = true;
        return TRUE;
    case WM_CLOSE:
        dialog->cancelled = true;
        return TRUE;
    case WM_DESTROY: // not by us: its owner has gone
        dialog->cancelled = true;
        dialog->window = nullptr;
        return FALSE;
    default:
        return FALSE;
    }
}

HWND AddControl(HWND dialog, LPCSTR windowClass, LPCSTR text, DWORD style, int id, RECT place) {
    MapDialogRect(dialog, &place);
    const HWND control =
        CreateWindowExA(0, windowClass, text, WS_CHILD | WS_VISIBLE | style, place.left, place.top,
                        place.right - place.left, place.bottom - place.top, dialog,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleA(nullptr), nullptr);
    if (control != nullptr) {
        SendMessageA(control, WM_SETFONT, static_cast<WPARAM>(SendMessageA(dialog, WM_GETFONT, 0, 0)), FALSE);
    }
    return control;
}

// The window that must not be used while the dialog is open: a control stands for the window it is in.
HWND TopLevelOwner(HWND owner) {
    const HWND root = IsWindow(owner) ? GetAncestor(owner, GA_ROOT) : nullptr;
    return root == GetDesktopWindow() ? nullptr : root;
}

void ServeMessages(ProgressDialog& dialog) {
    MSG message;
    // A window that keeps posting to itself must not hold up the work.
    for (int served = 0; served < kMostMessages && !dialog.cancelled; ++served) {
        if (!PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            return;
        }
        if (message.message == WM_QUIT) { // meant for the loop of the application
            PostQuitMessage(static_cast<int>(message.wParam));
            dialog.cancelled = true;
        } else if (!IsDialogMessageW(dialog.window, &message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

void DrawPercent(ProgressDialog& dialog) {
    dialog.caption.resize(dialog.titleLength);
    dialog.caption += ' ';
    dialog.caption += std::to_string(dialog.percent);
    dialog.caption += " %";
    SetWindowTextA(dialog.window, dialog.caption.c_str());
    SendMessageA(dialog.bar, PBM_SETPOS, static_cast<WPARAM>(dialog.percent), 0);
}

bool MakeWindow(ProgressDialog& dialog, HWND owner) {
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_PROGRESS_CLASS};
    if (!InitCommonControlsEx(&classes)) {
        return false;
    }
    dialog.window =
        CreateDialogIndirectParamA(GetModuleHandleA(nullptr), &kEmptyDialog.dialog, owner, DialogProcedure, 0);
    if (dialog.window == nullptr) {
        return false;
    }
    SetWindowLongPtrA(dialog.window, DWLP_USER, reinterpret_cast<LONG_PTR>(&dialog));
    dialog.bar = AddControl(dialog.window, PROGRESS_CLASSA, "", 0, 0, kBarPlace);
    const HWND cancel =
        AddControl(dialog.window, "BUTTON", "Cancel", BS_DEFPUSHBUTTON | WS_TABSTOP, IDCANCEL, kCancelPlace);
    if (dialog.bar == nullptr || cancel == nullptr) {
        return false;
    }
    if (owner != nullptr && !EnableWindow(owner, FALSE)) {
        dialog.disabledOwner = owner;
    }
    ShowWindow(dialog.window, SW_SHOW);
    SetFocus(cancel);
    return true;
}

} // namespace

void ProgressDialogDeleter::operator()(ProgressDialog* dialog) const {
    // The owner first: a window that goes hands over to its owner only when that can take input.
    if (dialog->disabledOwner != nullptr) {
        EnableWindow(dialog->disabledOwner, TRUE);
    }
    if (const HWND window = dialog->window; window != nullptr) {
        SetWindowLongPtrA(window, DWLP_USER, 0);
        DestroyWindow(window);
    }
    delete dialog;
}

ProgressDialogPtr MakeProgressDialog(HWND owner, LPCSTR title) {
    ProgressDialogPtr dialog(new ProgressDialog);
    dialog->caption = title != nullptr ? title : "Working";
    dialog->titleLength = dialog->caption.size();
    dialog->caption.reserve(dialog->titleLength + kPercentLength); // no memory is asked for while the work goes on
    if (!MakeWindow(*dialog, TopLevelOwner(owner))) {
        return nullptr;
    }
    ShowProgress(*dialog, 0);
    return dialog;
}

bool ShowProgress(ProgressDialog& dialog, int percent) {
    const bool isNews = dialog.percent != percent;
    if (dialog.cancelled || (!isNews && GetTickCount() - dialog.servedAt < kServeEvery)) {
        return !dialog.cancelled;
    }
    if (isNews) {
        dialog.percent = percent;
        DrawPercent(dialog);
    }
    ServeMessages(dialog);
    dialog.servedAt = GetTickCount();
    return !dialog.cancelled;
}

bool TellWindow(DWORD handle, int percent) {
    const auto window = reinterpret_cast<HWND>(static_cast<UINT_PTR>(handle));
    static const UINT message = RegisterWindowMessageA(QV8_PROGRESS_MESSAGE);
    if (message == 0 || !IsWindow(window)) {
        return true;
    }
    // A window whose program hangs is not waited for.
    DWORD_PTR answer = 0;
    const LRESULT answered =
        SendMessageTimeoutA(window, message, static_cast<WPARAM>(percent), 0, SMTO_ABORTIFHUNG, kAnswerWithin, &answer);
    return answered == 0 || answer != QV8_PROGRESS_CANCEL;
}

} // namespace qv8
