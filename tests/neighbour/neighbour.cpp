// A program that has functions of its own under names of the platform, as any program may, and a BOOL that is a byte,
// as X11's protocol headers have it. The library calls its own functions all the same.
typedef unsigned char BOOL;
#include "qv8effect.h"
typedef unsigned char BOOL; // a header that comes later, in the same program
#if __has_include(<X11/Xmd.h>)
#include <X11/Xlib.h>
#include <X11/Xmd.h>
#endif
#include <cstdio>
#include <initializer_list>

namespace {
int calls = 0;
} // namespace

#define QV8_OWN(name)                                                                                                  \
    extern "C" __attribute__((visibility("default"))) long OurOwn##name() __asm__(#name);                              \
    long OurOwn##name() {                                                                                              \
        std::printf("FAILED: the program's own %s is called\n", #name);                                                \
        return calls++;                                                                                                \
    }
QV8_OWN(CreateCompatibleDC)
QV8_OWN(DeleteObject)
QV8_OWN(Ellipse)
QV8_OWN(GlobalAlloc)
QV8_OWN(GlobalFree)
QV8_OWN(GlobalLock)
QV8_OWN(OpenClipboard)
QV8_OWN(Polygon)
QV8_OWN(SelectObject)

int main() {
    const HGLOBAL image = QV8CreateImage(40, 40, 24, 10, 20, 30, 0, 0, 0, 0);
    const POINT triangle[] = {{5, 5}, {30, 5}, {20, 30}};
    const RECT round = {5, 5, 30, 30};
    const ImageSet target = {image, nullptr};
    const HGLOBAL inPolygon = QV8RGBRev(&target, QV8_AREA_POLYGON, triangle, 3, nullptr, 1, 1, 1, 1, 0, 0, 0, 0);
    const HGLOBAL inEllipse = QV8RGBRev(&target, QV8_AREA_ELLIPSE, nullptr, 0, &round, 1, 1, 1, 1, 0, 0, 0, 0);
    const bool copied = QV8SetToClipBrd(nullptr, image, 0, 0, 0, 0) != 0;
    for (const HGLOBAL block : {image, inPolygon, inEllipse}) {
        if (block == nullptr || ::GlobalFree(block) != nullptr) {
            std::puts("FAILED: no result");
            return 1;
        }
    }
    return calls == 0 && copied ? 0 : 1;
}
