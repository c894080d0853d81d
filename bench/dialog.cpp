#include "dialog.h"

#include <cstdio>

#include "qv8effect.h"
#include "scene.h"
#include "timing.h"

namespace bench {
namespace {

#ifdef _WIN32
// The window that the dialog belongs to, as an application has one.
HWND MakeOwner() {
    return CreateWindowExA(0, "STATIC", "Benchmark", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 640, 480, nullptr, nullptr,
                           nullptr, nullptr);
}
#else
HWND MakeOwner() { // a dialog is a line on the terminal
    return nullptr;
}
#endif

struct Call {
    const char* name;
    Size size;
    HGLOBAL (*run)(ImageSet& target, DWORD progress, DWORD_PTR owner);
};

constexpr Call kCalls[] = {
    {"RGBRev",
     {"640x480", 640, 480},
     [](ImageSet& target, DWORD progress, DWORD_PTR owner) {
         return QV8RGBRev(&target, QV8_AREA_WHOLE, 0, 0, 0, 1, 1, 1, 1, progress, owner, 0, 0);
     }},
    {"ConvertColor 24 to 16 colours dithered",
     {"60MP", 10000, 6000},
     [](ImageSet& target, DWORD progress, DWORD_PTR owner) {
         return QV8ConvertColor(target.hImage, 4, 0, 1, 128, progress, owner, 0, 0);
     }},
};

} // namespace

void TimeDialog(int samples) {
    const auto owner = reinterpret_cast<DWORD_PTR>(MakeOwner());
    for (const Call& call : kCalls) {
        const Scene scene(call.size);
        ImageSet target = {scene.Picture(), nullptr};
        Timed without([&] { GlobalFree(call.run(target, QuietOwner(), 0)); });
        Timed with([&] { GlobalFree(call.run(target, 0, owner)); });
        for (int i = 0; i != samples; ++i) {
            without.TakeSample();
            with.TakeSample();
        }
        std::printf("%s, %s: %.3f ms without the progress dialog, %.3f ms with it: %+.1f %%\n", call.name,
                    call.size.name, without.Nanoseconds() / 1e6, with.Nanoseconds() / 1e6,
                    100 * (with.Nanoseconds() / without.Nanoseconds() - 1));
        std::fflush(stdout);
    }
}

} // namespace bench
