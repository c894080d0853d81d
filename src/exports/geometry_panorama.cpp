// Exported functions: panorama.
#include "exports/entry.h"
#include "geometry/panorama.h"

using qv8::RunFramed;

extern "C" {

QV8_ENTRY HGLOBAL QV8API QV8Panorama(HGLOBAL base, HGLOBAL added, DWORD seamMode, LONG a1x, LONG a1y, LONG a2x,
                                     LONG a2y, LONG b1x, LONG b1y, LONG b2x, LONG b2y, const BYTE* transparentRed,
                                     const BYTE* transparentGreen, const BYTE* transparentBlue, DWORD progressOwner,
                                     DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        const qv8::PanoramaOptions options = {
            static_cast<BYTE>(seamMode),
            {a1x, a1y},
            {a2x, a2y},
            {b1x, b1y},
            {b2x, b2y},
            qv8::TransparentColourAt(transparentRed, transparentGreen, transparentBlue)};
        return qv8::JoinPanorama(base, added, options, progressOwner);
    });
}

} // extern "C"
