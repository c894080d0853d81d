// Exported functions: tone and colour.
#include "exports/entry.h"
#include "tone/rgb_curves.h"
#include "tone/set_gray.h"
#include "tone/ycc_curves.h"

using qv8::AreaOf;
using qv8::Progress;
using qv8::RunFramed;

extern "C" {

QV8_REALIGN HGLOBAL QV8API QV8RGBGamma(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                       const RECT* rect, BOOL inside, double gammaRed, double gammaGreen,
                                       double gammaBlue, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                       DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::RgbGamma(AreaOf(target, areaType, points, pointCount, rect, inside), gammaRed, gammaGreen,
                             gammaBlue, progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8RGBLevel(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                       const RECT* rect, BOOL inside, LONG levelRed, LONG levelGreen, LONG levelBlue,
                                       DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::RgbLevel(AreaOf(target, areaType, points, pointCount, rect, inside), levelRed, levelGreen,
                             levelBlue, progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8RGBRev(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                     const RECT* rect, BOOL inside, BOOL invertRed, BOOL invertGreen, BOOL invertBlue,
                                     DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::RgbRev(AreaOf(target, areaType, points, pointCount, rect, inside), invertRed != 0, invertGreen != 0,
                           invertBlue != 0, progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8YCCGamma(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                       const RECT* rect, BOOL inside, double gammaY, double gammaCr, double gammaCb,
                                       DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::YccGamma(AreaOf(target, areaType, points, pointCount, rect, inside), gammaY, gammaCr, gammaCb,
                             progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8YCCLevel(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                       const RECT* rect, BOOL inside, LONG levelY, LONG levelCr, LONG levelCb,
                                       DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::YccLevel(AreaOf(target, areaType, points, pointCount, rect, inside), levelY, levelCr, levelCb,
                             progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8YCCRev(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                     const RECT* rect, BOOL inside, BOOL invertY, BOOL invertCr, BOOL invertCb,
                                     DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::YccRev(AreaOf(target, areaType, points, pointCount, rect, inside), invertY != 0, invertCr != 0,
                           invertCb != 0, progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8Chroma(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                     const RECT* rect, BOOL inside, LONG chroma, DWORD progressOwner, DWORD_PTR dialog1,
                                     DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::Chroma(AreaOf(target, areaType, points, pointCount, rect, inside), chroma, progress);
    });
}

QV8_REALIGN HGLOBAL QV8API QV8SetGray(HGLOBAL image, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                      DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3},
                     [&](const Progress& progress) { return qv8::SetGray(image, progress); });
}

} // extern "C"
