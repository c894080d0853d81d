// Exported functions: noise removal, anti-aliasing, mosaic, outline.
#include "exports/entry.h"
#include "filter/anti_alias.h"
#include "filter/mosaic.h"
#include "filter/outline.h"
#include "filter/remove_noise.h"

using qv8::AreaOf;
using qv8::ImagesOf;
using qv8::RunFramed;

extern "C" {

QV8_ENTRY HGLOBAL QV8API QV8RemoveNoise(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                        const RECT* rect, BOOL inside, DWORD mode, DWORD sensitivity,
                                        DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::RemoveNoise(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside),
                                static_cast<BYTE>(mode), static_cast<BYTE>(sensitivity), progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8AntiAlias(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                      const RECT* rect, BOOL inside, DWORD progressOwner, DWORD_PTR dialog1,
                                      DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::AntiAlias(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside), progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8Mosaic(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                   const RECT* rect, BOOL inside, int blockWidth, int blockHeight, DWORD progressOwner,
                                   DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::Mosaic(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside), blockWidth,
                           blockHeight, progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8Outline(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                    const RECT* rect, BOOL inside, DWORD channel, DWORD edgeOperator, DWORD gain,
                                    DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::Outline(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside),
                            static_cast<BYTE>(channel), static_cast<BYTE>(edgeOperator), static_cast<BYTE>(gain),
                            progressOwner);
    });
}

} // extern "C"
