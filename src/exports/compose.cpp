// Exported functions: composition.
#include "compose/layer.h"
#include "compose/panorama.h"
#include "compose/paste.h"
#include "exports/entry.h"

using qv8::Progress;
using qv8::RunFramed;

extern "C" {

QV8_REALIGN HGLOBAL QV8API QV8Layer(HGLOBAL base, HGLOBAL layer, DWORD opacity, DWORD transparentRed,
                                    DWORD transparentGreen, DWORD transparentBlue, DWORD backgroundRed,
                                    DWORD backgroundGreen, DWORD backgroundBlue, int x, int y, BOOL clipToBase,
                                    DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    const qv8::LayerBlend blend = {
        static_cast<BYTE>(opacity),
        {static_cast<BYTE>(transparentBlue), static_cast<BYTE>(transparentGreen), static_cast<BYTE>(transparentRed)}};
    const BYTE background[] = {static_cast<BYTE>(backgroundBlue), static_cast<BYTE>(backgroundGreen),
                               static_cast<BYTE>(backgroundRed)};
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::Layer(base, layer, blend, background, {x, y, clipToBase != 0}, progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8PasteImage(HGLOBAL base, const ImageSet* pasted, LONG angle, BOOL mirror, BOOL flip,
                                         DWORD opacity, const BYTE* transparentRed, const BYTE* transparentGreen,
                                         const BYTE* transparentBlue, LONG x, LONG y, DWORD sampling,
                                         DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        const qv8::PasteOptions options = {static_cast<int>(angle),
                                           mirror != 0,
                                           flip != 0,
                                           static_cast<BYTE>(opacity),
                                           qv8::TransparentColourAt(transparentRed, transparentGreen, transparentBlue),
                                           static_cast<int>(x),
                                           static_cast<int>(y),
                                           sampling == 0};
        return qv8::PasteImage(base, qv8::ImagesOf(pasted), options, progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8Panorama(HGLOBAL base, HGLOBAL added, DWORD seamMode, LONG a1x, LONG a1y, LONG a2x,
                                       LONG a2y, LONG b1x, LONG b1y, LONG b2x, LONG b2y, const BYTE* transparentRed,
                                       const BYTE* transparentGreen, const BYTE* transparentBlue, DWORD progressOwner,
                                       DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        const qv8::PanoramaOptions options = {
            static_cast<BYTE>(seamMode),
            {a1x, a1y},
            {a2x, a2y},
            {b1x, b1y},
            {b2x, b2y},
            qv8::TransparentColourAt(transparentRed, transparentGreen, transparentBlue)};
        return qv8::JoinPanorama(base, added, options, progress);
    });
}

} // extern "C"
