// Exported functions: hidden image.
#include "exports/entry.h"
#include "hidden/secret_image.h"

using qv8::Progress;
using qv8::RunFramed;

extern "C" {

QV8_REALIGN HGLOBAL QV8API QV8SetSecretImage(HGLOBAL image, HGLOBAL picture, LPCSTR text, LPCSTR faceName,
                                             DWORD pointSize, DWORD bold, DWORD italic, DWORD underline,
                                             DWORD strikeOut, DWORD direction, DWORD angle, int strength, int left,
                                             int top, int right, int bottom, DWORD progressOwner, DWORD_PTR dialog1,
                                             DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        const auto isSet = [](DWORD flag) { return static_cast<BYTE>(flag) != 0; };
        const qv8::TextStyle style = {static_cast<WORD>(pointSize),
                                      isSet(bold),
                                      isSet(italic),
                                      isSet(underline),
                                      isSet(strikeOut),
                                      static_cast<BYTE>(direction) >= 2,
                                      static_cast<WORD>(angle)};
        const qv8::SecretMark mark = {picture, text, faceName, style, {left, top, right, bottom}};
        return qv8::SetSecretImage(image, mark, strength, progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8CheckSecretImage(HGLOBAL unmarked, HGLOBAL marked, int threshold, DWORD progressOwner,
                                               DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::CheckSecretImage(unmarked, marked, threshold, progress);
    });
}

} // extern "C"
