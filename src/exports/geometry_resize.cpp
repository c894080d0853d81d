// Exported functions: scaling.
#include "exports/entry.h"
#include "geometry/resize.h"

using qv8::ImagesOf;

extern "C" {

QV8_ENTRY ImageSet QV8API QV8Resize(const ImageSet* target, int width, int height, DWORD smooth, DWORD progressOwner,
                                    DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return qv8::RunFramed(progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::ResizePicture(ImagesOf(target), width, height, smooth != 0, qv8::Progress{progressOwner});
    });
}

QV8_ENTRY BOOL QV8API QV8ResizeEx(const ImageSet* target, ImageSet* result, int width, int height, DWORD smooth,
                                  DWORD progressOwner, DWORD_PTR dialog1, DWORD_PTR dialog2, DWORD_PTR dialog3) {
    return qv8::RunFramedInto(result, progressOwner, {dialog1, dialog2, dialog3}, [&] {
        return qv8::ResizePicture(ImagesOf(target), width, height, smooth != 0, qv8::Progress{progressOwner});
    });
}

} // extern "C"
