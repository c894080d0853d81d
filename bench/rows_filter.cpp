#include <algorithm>
#include <array>

#include "rows.h"

namespace bench {
namespace {

template <class Function, class... Own>
HGLOBAL Filter(Function* function, const Scene& scene, Own... own) {
    const ImageSet target = {scene.Picture(), nullptr};
    return function(&target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, own..., QuietOwner(), 0, 0, 0);
}

// Weights that are all different from 0, with sums that do and do not fit 16 bits.
template <LONG kWeight, LONG kCentre>
HGLOBAL Custom(const Scene& scene) {
    std::array<LONG, 81> kernel;
    kernel.fill(kWeight);
    kernel[40] = kCentre;
    return Filter(QV8CustomFilter, scene, kernel.data(), DWORD{81}, DWORD{0}, 1, 1, 1);
}

template <DWORD kRadius>
HGLOBAL Shade(const Scene& scene) {
    return Filter(QV8Shade, scene, kRadius);
}

constexpr Row kRows[] = {
    {"CustomFilter", Custom<1, 3>},
    {"CustomFilter wide sums", Custom<-50, 4000>},
    {"Sharp", [](const Scene& s) { return Filter(QV8Sharp, s, DWORD{30}); }},
    {"Emboss", [](const Scene& s) { return Filter(QV8Emboss, s, DWORD{1}, DWORD{3}, DWORD{128}); }},
    {"Shade radius 1", Shade<1>},
    {"Shade radius 5", Shade<5>},
    {"Shade radius 20", Shade<20>},
    {"RemoveNoise channels", [](const Scene& s) { return Filter(QV8RemoveNoise, s, DWORD{1}, DWORD{255}); }},
    {"RemoveNoise luminance", [](const Scene& s) { return Filter(QV8RemoveNoise, s, DWORD{0}, DWORD{0}); }},
    {"AntiAlias", [](const Scene& s) { return Filter(QV8AntiAlias, s); }},
    {"Mosaic 8 x 8", [](const Scene& s) { return Filter(QV8Mosaic, s, 8, 8); }},
    {"Outline Sobel", [](const Scene& s) { return Filter(QV8Outline, s, DWORD{0}, DWORD{2}, DWORD{1}); }},
};

} // namespace

std::span<const Row> FilterRows() {
    return kRows;
}

} // namespace bench
