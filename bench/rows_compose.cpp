#include <cstring>

#include "rows.h"

namespace bench {
namespace {

// Pastes the picture onto itself, its middle onto the middle.
template <LONG kAngle, DWORD kOpacity, DWORD kSampling>
HGLOBAL Paste(const Scene& scene) {
    const ImageSet pasted = {scene.Picture(), nullptr};
    return QV8PasteImage(scene.Picture(), &pasted, kAngle, 0, 0, kOpacity, nullptr, nullptr, nullptr, scene.width / 2,
                         scene.height / 2, kSampling, QuietOwner(), 0, 0, 0);
}

HGLOBAL Layer(const Scene& scene) {
    return QV8Layer(scene.Picture(), scene.Picture(), 100, 1, 2, 3, 0, 0, 0, 0, 0, 1, QuietOwner(), 0, 0, 0);
}

HGLOBAL Panorama(const Scene& scene) {
    const auto x = [&](int part) { return static_cast<LONG>(scene.width * part / 1000); };
    const auto y = [&](int part) { return static_cast<LONG>(scene.height * part / 1000); };
    return QV8Panorama(scene.Picture(), scene.Picture(), 0, x(208), y(278), x(729), y(370), x(156), y(185), x(703),
                       y(556), nullptr, nullptr, nullptr, QuietOwner(), 0, 0, 0);
}

// A pattern of the picture's size with every bit set, or the right half of each eight columns.
HGLOBAL Pattern(const Scene& scene, BYTE bits) {
    return scene.Made("pattern " + std::to_string(bits), [&] {
        const HGLOBAL pattern = QV8CreateImage(scene.width, scene.height, 1, 0, 0, 0, QuietOwner(), 0, 0, 0);
        std::memset(LockPixels(pattern), bits, Stride(scene.width, 1) * static_cast<std::size_t>(scene.height));
        return pattern;
    });
}

HGLOBAL Mark(const Scene& scene, HGLOBAL pattern, const char* text) {
    return QV8SetSecretImage(scene.Picture(), pattern, text, nullptr, 24, 0, 0, 0, 0, 0, 0, 3, 0, 0, scene.width - 1,
                             scene.height - 1, QuietOwner(), 0, 0, 0);
}

HGLOBAL Check(const Scene& scene) {
    const HGLOBAL marked = scene.Made("marked", [&] { return Mark(scene, Pattern(scene, 0x0F), nullptr); });
    return QV8CheckSecretImage(scene.Picture(), marked, 2, QuietOwner(), 0, 0, 0);
}

template <int kBits>
HGLOBAL Create(const Scene& scene) {
    return QV8CreateImage(scene.width, scene.height, kBits, 30, 60, 90, QuietOwner(), 0, 0, 0);
}

HGLOBAL SetClipboard(const Scene& scene) {
    QV8SetToClipBrd(nullptr, scene.Picture(), QuietOwner(), 0, 0, 0);
    return nullptr;
}

constexpr Row kRows[] = {
    {"PasteImage", Paste<0, 255, 0>},
    {"PasteImage blended", Paste<0, 100, 0>},
    {"PasteImage 30", Paste<3000, 255, 1>},
    {"PasteImage 30 smooth", Paste<3000, 255, 0>},
    {"Layer", Layer},
    {"Panorama", Panorama},
    {"SetSecretImage", [](const Scene& s) { return Mark(s, Pattern(s, 0xFF), nullptr); }},
    {"SetSecretImage text", [](const Scene& s) { return Mark(s, nullptr, "Sample"); }},
    {"CheckSecretImage", Check},
    {"CreateImage", Create<24>},
    {"CopyImage", [](const Scene& s) { return QV8CopyImage(s.Picture(), QuietOwner(), 0, 0, 0); }},
    {"SetToClipBrd", SetClipboard},
    {"IsClipBrdData",
     [](const Scene&) -> HGLOBAL {
         QV8IsClipBrdData(nullptr);
         return nullptr;
     }},
    {"GetFromClipBrd", [](const Scene&) { return QV8GetFromClipBrd(nullptr, QuietOwner(), 0, 0, 0); }},
    {"ClearClipBrd",
     [](const Scene&) -> HGLOBAL {
         QV8ClearClipBrd(nullptr);
         return nullptr;
     }},
};

} // namespace

std::span<const Row> ComposeRows() {
    return kRows;
}

} // namespace bench
