// Exported functions: straightening.
#include "exports/entry.h"
#include "geometry/affine.h"

extern "C" {

QV8_ENTRY HGLOBAL QV8API QV8Affine(HGLOBAL image, LONG x1, LONG y1, LONG x2, LONG y2, LONG x3, LONG y3, LONG x4,
                                   LONG y4, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                   DWORD_PTR dialog3) {
    return qv8::RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        const POINT corners[4] = {{x1, y1}, {x2, y2}, {x3, y3}, {x4, y4}};
        return qv8::StraightenPicture(image, corners, qv8::Progress{progressOwner});
    });
}

} // extern "C"
