// Exported functions: filters.
#include "exports/entry.h"
#include "filter/anti_alias.h"
#include "filter/box_mean.h"
#include "filter/convolution.h"
#include "filter/mosaic.h"
#include "filter/outline.h"
#include "filter/remove_noise.h"
#include "filter/sharpen.h"

using qv8::AreaOf;
using qv8::Progress;
using qv8::RunFramed;

extern "C" {

QV8_REALIGN HGLOBAL QV8API QV8CustomFilter(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                           const RECT* rect, BOOL inside, const LONG* kernel, DWORD divisor,
                                           DWORD offset, BOOL red, BOOL green, BOOL blue, DWORD progressOwner,
                                           DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::CustomFilter(AreaOf(target, areaType, points, pointCount, rect, inside), kernel,
                                 static_cast<BYTE>(divisor), static_cast<BYTE>(offset), red != 0, green != 0, blue != 0,
                                 progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8Sharp(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                    const RECT* rect, BOOL inside, DWORD strength, DWORD progressOwner,
                                    DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::Sharpen(AreaOf(target, areaType, points, pointCount, rect, inside), static_cast<BYTE>(strength),
                            progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8Emboss(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                     const RECT* rect, BOOL inside, DWORD direction, DWORD depth, DWORD base,
                                     DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::Emboss(AreaOf(target, areaType, points, pointCount, rect, inside), static_cast<BYTE>(direction),
                           static_cast<BYTE>(depth), static_cast<BYTE>(base), progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8Shade(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                    const RECT* rect, BOOL inside, DWORD radius, DWORD progressOwner, DWORD_PTR dialog1,
                                    DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::Shade(AreaOf(target, areaType, points, pointCount, rect, inside), static_cast<BYTE>(radius),
                          progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8RemoveNoise(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                          const RECT* rect, BOOL inside, DWORD mode, DWORD sensitivity,
                                          DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                          DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::RemoveNoise(AreaOf(target, areaType, points, pointCount, rect, inside), static_cast<BYTE>(mode),
                                static_cast<BYTE>(sensitivity), progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8AntiAlias(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                        const RECT* rect, BOOL inside, DWORD progressOwner, DWORD_PTR dialog1,
                                        DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::AntiAlias(AreaOf(target, areaType, points, pointCount, rect, inside), progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8Mosaic(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                     const RECT* rect, BOOL inside, int blockWidth, int blockHeight,
                                     DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::Mosaic(AreaOf(target, areaType, points, pointCount, rect, inside), blockWidth, blockHeight,
                           progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8Outline(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                      const RECT* rect, BOOL inside, DWORD channel, DWORD edgeOperator, DWORD gain,
                                      DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::Outline(AreaOf(target, areaType, points, pointCount, rect, inside), static_cast<BYTE>(channel),
                            static_cast<BYTE>(edgeOperator), static_cast<BYTE>(gain), progress);
    });
}

} // extern "C"
