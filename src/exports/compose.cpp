// Exported functions: composition.
#include "compose/layer.h"
#include "exports/entry.h"

using qv8::RunFramed;

extern "C" {

QV8_ENTRY HGLOBAL QV8API QV8Layer(HGLOBAL base, HGLOBAL layer, DWORD opacity, DWORD transparentRed,
                                  DWORD transparentGreen, DWORD transparentBlue, DWORD backgroundRed,
                                  DWORD backgroundGreen, DWORD backgroundBlue, int x, int y, BOOL clipToBase,
                                  DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    const qv8::LayerBlend blend = {
        static_cast<BYTE>(opacity),
        {static_cast<BYTE>(transparentBlue), static_cast<BYTE>(transparentGreen), static_cast<BYTE>(transparentRed)}};
    const BYTE background[] = {static_cast<BYTE>(backgroundBlue), static_cast<BYTE>(backgroundGreen),
                               static_cast<BYTE>(backgroundRed)};
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::Layer(base, layer, blend, background, {x, y, clipToBase != 0}, progressOwner);
    });
}

} // extern "C"
