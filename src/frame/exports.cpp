// The exported functions: each is the call frame around one worker.
#include "convert/convert_color.h"
#include "frame/area.h"
#include "frame/call_frame.h"
#include "image/create_copy.h"
#include "tone/rgb_curves.h"
#include "tone/set_gray.h"
#include "tone/ycc_curves.h"

// Callers align the stack to 4 bytes only, our code wants 16.
#ifdef __i386__
#define QV8_ENTRY __attribute__((force_align_arg_pointer))
#else
#define QV8_ENTRY
#endif

namespace {

ImageSet ImagesOf(const ImageSet* target) {
    return target != nullptr ? *target : ImageSet{nullptr, nullptr};
}

qv8::AreaArguments AreaOf(DWORD areaType, const POINT* points, int pointCount, const RECT* rect, BOOL inside) {
    return {static_cast<BYTE>(areaType), points, pointCount, rect != nullptr ? *rect : RECT{0, 0, 0, 0}, inside != 0};
}

} // namespace

using qv8::RunFramed;

extern "C" {

QV8_ENTRY HGLOBAL QV8API QV8RGBGamma(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                     const RECT* rect, BOOL inside, double gammaRed, double gammaGreen,
                                     double gammaBlue, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                     DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::RgbGamma(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside), gammaRed, gammaGreen,
                             gammaBlue, progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8RGBLevel(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                     const RECT* rect, BOOL inside, LONG levelRed, LONG levelGreen, LONG levelBlue,
                                     DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::RgbLevel(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside), levelRed, levelGreen,
                             levelBlue, progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8RGBRev(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                   const RECT* rect, BOOL inside, BOOL invertRed, BOOL invertGreen, BOOL invertBlue,
                                   DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::RgbRev(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside), invertRed != 0,
                           invertGreen != 0, invertBlue != 0, progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8YCCGamma(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                     const RECT* rect, BOOL inside, double gammaY, double gammaCr, double gammaCb,
                                     DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::YccGamma(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside), gammaY, gammaCr,
                             gammaCb, progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8YCCLevel(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                     const RECT* rect, BOOL inside, LONG levelY, LONG levelCr, LONG levelCb,
                                     DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::YccLevel(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside), levelY, levelCr,
                             levelCb, progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8YCCRev(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                   const RECT* rect, BOOL inside, BOOL invertY, BOOL invertCr, BOOL invertCb,
                                   DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::YccRev(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside), invertY != 0,
                           invertCr != 0, invertCb != 0, progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8Chroma(const ImageSet* target, DWORD areaType, const POINT* points, int pointCount,
                                   const RECT* rect, BOOL inside, LONG chroma, DWORD progressOwner, DWORD_PTR dialog1,
                                   DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::Chroma(ImagesOf(target), AreaOf(areaType, points, pointCount, rect, inside), chroma, progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8SetGray(HGLOBAL image, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                    DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] { return qv8::SetGray(image, progressOwner); });
}

QV8_ENTRY HGLOBAL QV8API QV8ConvertColor(HGLOBAL image, DWORD bitDepth, BOOL fixedPalette, BOOL dither, DWORD threshold,
                                         DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::ConvertColor(image, static_cast<WORD>(bitDepth), fixedPalette != 0, dither != 0,
                                 static_cast<BYTE>(threshold), progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8CreateImage(int width, int height, DWORD bitDepth, DWORD red, DWORD green, DWORD blue,
                                        DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::CreateImage(width, height, static_cast<std::int16_t>(bitDepth), static_cast<BYTE>(red),
                                static_cast<BYTE>(green), static_cast<BYTE>(blue), progressOwner);
    });
}

QV8_ENTRY HGLOBAL QV8API QV8CopyImage(HGLOBAL image, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                      DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] { return qv8::CopyImage(image, progressOwner); });
}

} // extern "C"
