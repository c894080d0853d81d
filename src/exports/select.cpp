// Exported functions: selection.
#include "exports/entry.h"
#include "select/auto_select_image.h"
#include "select/select_image.h"

using qv8::AreaOf;
using qv8::ColourOf;
using qv8::Progress;
using qv8::RunFramed;
using qv8::RunFramedInto;
using qv8::UnopenedPair;

extern "C" {

QV8_REALIGN ImageSet QV8API QV8SelectImage(HGLOBAL image, DWORD areaType, const POINT* points, int pointCount,
                                           const RECT* rect, BOOL inside, DWORD red, DWORD green, DWORD blue,
                                           DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                           DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::SelectImage(AreaOf(image, areaType, points, pointCount, rect, inside), ColourOf(red, green, blue),
                                progress);
    });
}

QV8_REALIGN BOOL QV8API QV8SelectImageEx(HGLOBAL image, ImageSet* result, DWORD areaType, const POINT* points,
                                         int pointCount, const RECT* rect, BOOL inside, DWORD red, DWORD green,
                                         DWORD blue, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                         DWORD_PTR dialog3) {
    return RunFramedInto(result, UnopenedPair::kIsCleared, progressOwner, {dialog1, dialog2, dialog3},
                         [&](const Progress& progress) {
                             return qv8::SelectImage(AreaOf(image, areaType, points, pointCount, rect, inside),
                                                     ColourOf(red, green, blue), progress);
                         });
}

QV8_REALIGN ImageSet QV8API QV8AutoSelectImage(HGLOBAL image, DWORD areaType, const POINT* points, int pointCount,
                                               const RECT* rect, BOOL inside, DWORD red, DWORD green, DWORD blue,
                                               DWORD matchMode, DWORD tolerance, DWORD progressOwner, DWORD_PTR dialog1,
                                               DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::AutoSelectImage(AreaOf(image, areaType, points, pointCount, rect, inside),
                                    ColourOf(red, green, blue), static_cast<BYTE>(matchMode),
                                    static_cast<BYTE>(tolerance), progress);
    });
}

QV8_REALIGN BOOL QV8API QV8AutoSelectImageEx(HGLOBAL image, ImageSet* result, DWORD areaType, const POINT* points,
                                             int pointCount, const RECT* rect, BOOL inside, DWORD red, DWORD green,
                                             DWORD blue, DWORD matchMode, DWORD tolerance, DWORD progressOwner,
                                             DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramedInto(result, UnopenedPair::kIsCleared, progressOwner, {dialog1, dialog2, dialog3},
                         [&](const Progress& progress) {
                             return qv8::AutoSelectImage(AreaOf(image, areaType, points, pointCount, rect, inside),
                                                         ColourOf(red, green, blue), static_cast<BYTE>(matchMode),
                                                         static_cast<BYTE>(tolerance), progress);
                         });
}

} // extern "C"
