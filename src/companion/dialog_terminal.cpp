// The progress dialog where there are no windows: one line on standard error, when that is a terminal.
#include <unistd.h>

#include <cstdio>
#include <string>

#include "companion/dialog.h"

namespace qv8 {
namespace {

constexpr int kBarCells = 20;
constexpr std::size_t kMaxTitleBytes = 40; // the line must not wrap, or it could not be rewritten

// Control characters would move the cursor.
std::string LineTitle(LPCSTR title) {
    std::string result;
    for (const char* letter = title; *letter != '\0' && result.size() < kMaxTitleBytes; ++letter) {
        const auto code = static_cast<unsigned char>(*letter);
        result += code < ' ' || code == 0x7F ? ' ' : *letter;
    }
    return result;
}

} // namespace

struct ProgressDialog {
    std::string title;
    bool isVisible;
    int percent = -1;
};

namespace {

void DrawLine(const ProgressDialog& dialog) {
    const int filled = dialog.percent * kBarCells / 100;
    char bar[kBarCells + 1] = {};
    for (int cell = 0; cell < kBarCells; ++cell) {
        bar[cell] = cell < filled ? '#' : '-';
    }
    std::fprintf(stderr, "\r%s [%s] %d %%\x1B[K", dialog.title.c_str(), bar, dialog.percent);
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
    ProgressDialogPtr dialog(
        new ProgressDialog{LineTitle(title != nullptr ? title : "Working"), isatty(STDERR_FILENO) != 0});
    ShowProgress(*dialog, 0);
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
