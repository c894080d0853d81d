// The progress dialog on Windows: a modeless dialog with a bar and a Cancel button, made without resources.
//
// Making a window, drawing it and serving messages cost far more than most effects. So there is none until the work has
// lasted for a while, and from then on it is seldom brought up to date; until then nothing but the clock is read.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <atomic>
#include <cstring>

#include "companion/dialog.h"
#include "companion/without_throwing.h"

namespace qv8 {

struct ProgressDialog : NullWhenMemoryIsShort {
    HWND owner = nullptr;
    HWND window = nullptr; // null until it is shown, and again when others have destroyed it
    HWND bar = nullptr;
    HWND disabledOwner = nullptr;                 // to be enabled at the end; null when it was disabled before
    std::unique_ptr<char[], FreeDeleter> caption; // the title and, behind it, the percentage
    std::size_t titleLength = 0;
    int shownPercent = -1;
    DWORD openedAt = 0;
    DWORD servedAt = 0;
    DWORD pause = 0;       // from then until it is served again
    bool wasTried = false; // the window was made, or could not be
    bool cancelled = false;
};

namespace {

constexpr DWORD kShowAfter = 200; // milliseconds, here and below
constexpr DWORD kShortestPause = 50;
constexpr DWORD kLongestPause = 200;
constexpr LONGLONG kPauseByService = 100; // so that service takes no more than a hundredth of the time
constexpr UINT kAnswerWithin = 2000;
constexpr int kMostMessages = 100;
constexpr std::size_t kPercentSize = sizeof " 100 %";

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

QV8_REALIGN INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM) {
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

// The clock of ticks is too coarse for what a service takes.
LONGLONG Microseconds() {
    LARGE_INTEGER ticks = {};
    LARGE_INTEGER perSecond = {};
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&perSecond);
    return ticks.QuadPart / perSecond.QuadPart * 1000000 +
           ticks.QuadPart % perSecond.QuadPart * 1000000 / perSecond.QuadPart;
}

// Where windows are slow, as on a screen far away, they are served more seldom; but nobody waits long for Cancel.
DWORD PauseAfter(LONGLONG serviceMicroseconds) {
    const LONGLONG wanted = serviceMicroseconds * kPauseByService / 1000;
    return static_cast<DWORD>(std::clamp<LONGLONG>(wanted, kShortestPause, kLongestPause));
}

void DrawPercent(ProgressDialog& dialog, int percent) {
    dialog.shownPercent = percent;
    wsprintfA(dialog.caption.get() + dialog.titleLength, " %d %%", percent);
    SetWindowTextA(dialog.window, dialog.caption.get());
    SendMessageA(dialog.bar, PBM_SETPOS, static_cast<WPARAM>(percent), 0);
}

// In the middle of the owner, but on the screen with all of it. Without an owner the system has put it in the middle of
// the screen.
void CentreOnOwner(HWND window, HWND owner) {
    RECT below;
    RECT own;
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!IsWindowVisible(owner) || IsIconic(owner) || !GetWindowRect(owner, &below) || !GetWindowRect(window, &own) ||
        !GetMonitorInfoA(MonitorFromWindow(owner, MONITOR_DEFAULTTONEAREST), &monitor)) {
        return;
    }
    const RECT& screen = monitor.rcWork;
    const LONG width = own.right - own.left;
    const LONG height = own.bottom - own.top;
    const LONG left = below.left + (below.right - below.left - width) / 2;
    const LONG top = below.top + (below.bottom - below.top - height) / 2;
    SetWindowPos(window, nullptr, std::max(std::min(left, screen.right - width), screen.left),
                 std::max(std::min(top, screen.bottom - height), screen.top), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

bool AddControls(ProgressDialog& dialog) {
    dialog.bar = AddControl(dialog.window, PROGRESS_CLASSA, "", 0, 0, kBarPlace);
    const HWND cancel =
        AddControl(dialog.window, "BUTTON", "Cancel", BS_DEFPUSHBUTTON | WS_TABSTOP, IDCANCEL, kCancelPlace);
    return dialog.bar != nullptr && cancel != nullptr;
}

// The work goes on without a window that cannot be made.
void MakeWindow(ProgressDialog& dialog, int percent) {
    dialog.wasTried = true;
    const HWND owner = TopLevelOwner(dialog.owner);
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_PROGRESS_CLASS};
    if (!InitCommonControlsEx(&classes)) {
        return;
    }
    dialog.window =
        CreateDialogIndirectParamA(GetModuleHandleA(nullptr), &kEmptyDialog.dialog, owner, DialogProcedure, 0);
    if (dialog.window == nullptr) {
        return;
    }
    if (!AddControls(dialog)) {
        DestroyWindow(dialog.window);
        dialog.window = nullptr;
        return;
    }
    SetWindowLongPtrA(dialog.window, DWLP_USER, reinterpret_cast<LONG_PTR>(&dialog));
    CentreOnOwner(dialog.window, owner);
    DrawPercent(dialog, percent);
    if (owner != nullptr && !EnableWindow(owner, FALSE)) {
        dialog.disabledOwner = owner;
    }
    ShowWindow(dialog.window, SW_SHOW);
    SetFocus(GetDlgItem(dialog.window, IDCANCEL));
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
    if (!dialog) {
        return nullptr;
    }
    const char* const shown = title != nullptr ? title : "Working";
    dialog->titleLength = std::strlen(shown);
    dialog->caption.reset(static_cast<char*>(std::malloc(dialog->titleLength + kPercentSize)));
    if (!dialog->caption) {
        return nullptr;
    }
    std::memcpy(dialog->caption.get(), shown, dialog->titleLength);
    dialog->owner = owner;
    dialog->openedAt = GetTickCount();
    return dialog;
}

bool ShowProgress(ProgressDialog& dialog, int percent) {
    const DWORD now = GetTickCount();
    if (dialog.cancelled || now - dialog.openedAt < kShowAfter || now - dialog.servedAt < dialog.pause) {
        return !dialog.cancelled;
    }
    if (!dialog.wasTried) {
        MakeWindow(dialog, percent);
    }
    if (dialog.window == nullptr) {
        return !dialog.cancelled;
    }
    const LONGLONG begin = Microseconds();
    if (dialog.shownPercent != percent) {
        DrawPercent(dialog, percent);
    }
    ServeMessages(dialog);
    dialog.pause = PauseAfter(Microseconds() - begin);
    dialog.servedAt = GetTickCount();
    return !dialog.cancelled;
}

bool TellWindow(DWORD handle, int percent) {
    const auto window = reinterpret_cast<HWND>(static_cast<UINT_PTR>(handle));
    static std::atomic<UINT> known = 0;
    UINT message = known;
    if (message == 0) { // two threads at once get the same number
        message = RegisterWindowMessageA(QV8_PROGRESS_MESSAGE);
        known = message;
    }
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
