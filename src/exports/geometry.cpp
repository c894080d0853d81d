// Exported functions: scaling, rotation, straightening.
#include "exports/entry.h"
#include "geometry/affine.h"
#include "geometry/resize.h"
#include "geometry/rotation.h"

using qv8::ImagesOf;
using qv8::Progress;
using qv8::RunFramed;
using qv8::UnopenedPair;

namespace {

qv8::RotationOptions OptionsOf(LONG angle, BOOL mirror, BOOL flip, DWORD smooth, DWORD red, DWORD green, DWORD blue,
                               BOOL keepSize) {
    return {static_cast<int>(angle),         mirror != 0,  flip != 0, smooth != 0,
            qv8::ColourOf(red, green, blue), keepSize != 0};
}

} // namespace

extern "C" {

QV8_REALIGN ImageSet QV8API QV8Resize(const ImageSet* target, int width, int height, DWORD smooth, DWORD progressOwner,
                                      DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::ResizePicture(ImagesOf(target), width, height, smooth != 0, progress);
    });
}

QV8_REALIGN BOOL QV8API QV8ResizeEx(const ImageSet* target, ImageSet* result, int width, int height, DWORD smooth,
                                    DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return qv8::RunFramedInto(result, UnopenedPair::kIsLeft, progressOwner, {dialog1, dialog2, dialog3},
                              [&](const Progress& progress) {
                                  return qv8::ResizePicture(ImagesOf(target), width, height, smooth != 0, progress);
                              });
}

QV8_REALIGN ImageSet QV8API QV8Rotation(const ImageSet* target, LONG angle, BOOL mirror, BOOL flip, DWORD smooth,
                                        DWORD red, DWORD green, DWORD blue, BOOL keepSize, DWORD progressOwner,
                                        DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        return qv8::RotatePicture(ImagesOf(target), OptionsOf(angle, mirror, flip, smooth, red, green, blue, keepSize),
                                  progress);
    });
}

QV8_REALIGN BOOL QV8API QV8RotationEx(const ImageSet* target, ImageSet* result, LONG angle, BOOL mirror, BOOL flip,
                                      DWORD smooth, DWORD red, DWORD green, DWORD blue, BOOL keepSize,
                                      DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return qv8::RunFramedInto(
        result, UnopenedPair::kIsLeft, progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
            return qv8::RotatePicture(ImagesOf(target),
                                      OptionsOf(angle, mirror, flip, smooth, red, green, blue, keepSize), progress);
        });
}

QV8_REALIGN HGLOBAL QV8API QV8Affine(HGLOBAL image, LONG x1, LONG y1, LONG x2, LONG y2, LONG x3, LONG y3, LONG x4,
                                     LONG y4, DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2,
                                     DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&](const Progress& progress) {
        const POINT corners[4] = {{x1, y1}, {x2, y2}, {x3, y3}, {x4, y4}};
        return qv8::StraightenPicture(image, corners, progress);
    });
}

} // extern "C"
