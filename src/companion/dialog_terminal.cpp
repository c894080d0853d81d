// The progress dialog where there are no windows: one line on standard error, when that is a terminal.
#include <unistd.h>

#include <cstdio>

#include "companion/dialog.h"
#include "companion/without_throwing.h"

namespace qv8 {
namespace {

constexpr int kBarCells = 20;
constexpr std::size_t kMaxTitleBytes = 40; // the line must not wrap, or it could not be rewritten

} // namespace

struct ProgressDialog : NullWhenMemoryIsShort {
    char title[kMaxTitleBytes + 1] = {};
    bool isVisible = isatty(STDERR_FILENO) != 0;
    int percent = -1;
};

namespace {

// Control characters would move the cursor.
void SetTitle(ProgressDialog& dialog, LPCSTR title) {
    for (std::size_t place = 0; place != kMaxTitleBytes && title[place] != '\0'; ++place) {
        const auto code = static_cast<unsigned char>(title[place]);
        dialog.title[place] = code < ' ' || code == 0x7F ? ' ' : title[place];
    }
}

void DrawLine(const ProgressDialog& dialog) {
    const int filled = dialog.percent * kBarCells / 100;
    char bar[kBarCells + 1] = {};
    for (int cell = 0; cell < kBarCells; ++cell) {
        bar[cell] = cell < filled ? '#' : '-';
    }
    std::fprintf(stderr, "\r%s [%s] %d %%\x1B[K", dialog.title, bar, dialog.percent);
    std::fflush(stderr);
}

} // namespace

void ProgressDialogDeleter::operator()(ProgressDialog* dialog) const {
    if (dialog->isVisible) {
        std::fputs("\r\x1B[K", stderr);
        std::fflush(stderr);
    }
    delete dialog;
}

ProgressDialogPtr MakeProgressDialog(HWND, LPCSTR title) {
    ProgressDialogPtr dialog(new ProgressDialog);
    if (dialog) {
        SetTitle(*dialog, title != nullptr ? title : "Working");
        ShowProgress(*dialog, 0);
    }
    return dialog;
}

bool ShowProgress(ProgressDialog& dialog, int percent) {
    if (dialog.isVisible && dialog.percent != percent) {
        dialog.percent = percent;
        DrawLine(dialog);
    }
    return true;
}

bool TellWindow(DWORD, int) {
    return true;
}

} // namespace qv8
