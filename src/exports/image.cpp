// Exported functions: creation, copy, clipboard.
#include "exports/entry.h"
#include "image/clipboard.h"
#include "image/create_copy.h"

using qv8::Progress;
using qv8::RunFramed;

extern "C" {

QV8_REALIGN HGLOBAL QV8API QV8CreateImage(int width, int height, DWORD bitDepth, DWORD red, DWORD green, DWORD blue,
                                          DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                          DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::CreateImage(width, height, static_cast<std::int16_t>(bitDepth), static_cast<BYTE>(red),
                                static_cast<BYTE>(green), static_cast<BYTE>(blue), progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8CopyImage(HGLOBAL image, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                        DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3},
                     [&](const Progress& progress) { return qv8::CopyImage(image, progress); });
}

QV8_REALIGN BOOL QV8API QV8SetToClipBrd(HWND window, HGLOBAL image, DWORD progressOwner, DWORD_PTR dialog1,
                                        DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3},
                     [&](const Progress& progress) { return qv8::SetToClipboard(window, image, progress); });
}

QV8_REALIGN HGLOBAL QV8API QV8GetFromClipBrd(HWND window, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                             DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3},
                     [&](const Progress& progress) { return qv8::GetFromClipboard(window, progress); });
}

QV8_REALIGN BOOL QV8API QV8IsClipBrdData(HWND window) {
    return qv8::HasClipboardData(window);
}

QV8_REALIGN BOOL QV8API QV8ClearClipBrd(HWND window) {
    return qv8::ClearClipboard(window);
}

} // extern "C"
