// Exported functions: rotation.
#include "exports/entry.h"
#include "geometry/rotation.h"

using qv8::RunFramed;

namespace {

qv8::RotationOptions OptionsOf(LONG angle, BOOL mirror, BOOL flip, DWORD smooth, DWORD red, DWORD green, DWORD blue,
                               BOOL keepSize) {
    return {static_cast<int>(angle),         mirror != 0,  flip != 0, smooth != 0,
            qv8::ColourOf(red, green, blue), keepSize != 0};
}

} // namespace

extern "C" {

QV8_ENTRY ImageSet QV8API QV8Rotation(const ImageSet* target, LONG angle, BOOL mirror, BOOL flip, DWORD smooth,
                                      DWORD red, DWORD green, DWORD blue, BOOL keepSize, DWORD progressOwner,
                                      DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::RotatePicture(qv8::ImagesOf(target),
                                  OptionsOf(angle, mirror, flip, smooth, red, green, blue, keepSize), progressOwner);
    });
}

QV8_ENTRY BOOL QV8API QV8RotationEx(const ImageSet* target, ImageSet* result, LONG angle, BOOL mirror, BOOL flip,
                                    DWORD smooth, DWORD red, DWORD green, DWORD blue, BOOL keepSize,
                                    DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return qv8::RunFramedInto(result, progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::RotatePicture(qv8::ImagesOf(target),
                                  OptionsOf(angle, mirror, flip, smooth, red, green, blue, keepSize), progressOwner);
    });
}

} // extern "C"
