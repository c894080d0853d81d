// Exported functions: colour depth.
#include "convert/convert_color.h"
#include "exports/entry.h"

using qv8::Progress;
using qv8::RunFramed;

extern "C" {

QV8_REALIGN HGLOBAL QV8API QV8ConvertColor(HGLOBAL image, DWORD bitDepth, BOOL fixedPalette, BOOL dither,
                                           DWORD threshold, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                           DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::ConvertColor(image, static_cast<WORD>(bitDepth), fixedPalette != 0, dither != 0,
                                 static_cast<BYTE>(threshold), progress);
    });
}

} // extern "C"
