// Exported functions: selection.
#include "exports/entry.h"
#include "select/auto_select_image.h"
#include "select/select_image.h"

using qv8::AreaOf;
using qv8::Caller;
using qv8::ColourOf;
using qv8::RunFramed;
using qv8::RunFramedInto;
using qv8::UnopenedPair;

extern "C" {

QV8_ENTRY ImageSet QV8API QV8SelectImage(HGLOBAL image, DWORD areaType, const POINT* points, int pointCount,
                                         const RECT* rect, BOOL inside, DWORD red, DWORD green, DWORD blue,
                                         DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Caller& caller) {
        return qv8::SelectImage(image, AreaOf(areaType, points, pointCount, rect, inside), ColourOf(red, green, blue),
                                caller);
    });
}

QV8_ENTRY BOOL QV8API QV8SelectImageEx(HGLOBAL image, ImageSet* result, DWORD areaType, const POINT* points,
                                       int pointCount, const RECT* rect, BOOL inside, DWORD red, DWORD green,
                                       DWORD blue, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                       DWORD_PTR dialog3) {
    return RunFramedInto(result, UnopenedPair::kIsCleared, progressOwner, {dialog1, dialog2, dialog3},
                         [&](const Caller& caller) {
                             return qv8::SelectImage(image, AreaOf(areaType, points, pointCount, rect, inside),
                                                     ColourOf(red, green, blue), caller);
                         });
}

QV8_ENTRY ImageSet QV8API QV8AutoSelectImage(HGLOBAL image, DWORD areaType, const POINT* points, int pointCount,
                                             const RECT* rect, BOOL inside, DWORD red, DWORD green, DWORD blue,
                                             DWORD matchMode, DWORD tolerance, DWORD progressOwner, DWORD_PTR dialog1,
                                             DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Caller& caller) {
        return qv8::AutoSelectImage(image, AreaOf(areaType, points, pointCount, rect, inside),
                                    ColourOf(red, green, blue), static_cast<BYTE>(matchMode),
                                    static_cast<BYTE>(tolerance), caller);
    });
}

QV8_ENTRY BOOL QV8API QV8AutoSelectImageEx(HGLOBAL image, ImageSet* result, DWORD areaType, const POINT* points,
                                           int pointCount, const RECT* rect, BOOL inside, DWORD red, DWORD green,
                                           DWORD blue, DWORD matchMode, DWORD tolerance, DWORD progressOwner,
                                           DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramedInto(result, UnopenedPair::kIsCleared, progressOwner, {dialog1, dialog2, dialog3},
                         [&](const Caller& caller) {
                             return qv8::AutoSelectImage(image, AreaOf(areaType, points, pointCount, rect, inside),
                                                         ColourOf(red, green, blue), static_cast<BYTE>(matchMode),
                                                         static_cast<BYTE>(tolerance), caller);
                         });
}

} // extern "C"
