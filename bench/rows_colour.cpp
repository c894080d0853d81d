#include "rows.h"

namespace bench {
namespace {

// Calls an export whose arguments are target, area, its own parameters, owner and dialog on the whole picture.
template <class Function, class... Own>
HGLOBAL Whole(Function* function, const Scene& scene, Own... own) {
    const ImageSet target = {scene.Picture(), nullptr};
    return function(&target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, own..., QuietOwner(), 0, 0, 0);
}

template <int kFrom, int kTo, QV8BOOL kFixed = 0, QV8BOOL kDither = 0>
HGLOBAL Convert(const Scene& scene) {
    return QV8ConvertColor(scene.Picture(kFrom), kTo, kFixed, kDither, 128, QuietOwner(), 0, 0, 0);
}

constexpr Row kRows[] = {
    {"RGBGamma", [](const Scene& s) { return Whole(QV8RGBGamma, s, -0.5, -0.5, -0.5); }},
    {"RGBLevel", [](const Scene& s) { return Whole(QV8RGBLevel, s, LONG{40}, LONG{40}, LONG{40}); }},
    {"RGBRev", [](const Scene& s) { return Whole(QV8RGBRev, s, 1, 1, 1); }},
    {"YCCGamma", [](const Scene& s) { return Whole(QV8YCCGamma, s, 0.1, 0.2, 0.3); }},
    {"YCCLevel", [](const Scene& s) { return Whole(QV8YCCLevel, s, LONG{10}, LONG{20}, LONG{30}); }},
    {"YCCRev", [](const Scene& s) { return Whole(QV8YCCRev, s, 1, 1, 0); }},
    {"Chroma", [](const Scene& s) { return Whole(QV8Chroma, s, LONG{50}); }},
    {"SetGray", [](const Scene& s) { return QV8SetGray(s.Picture(), QuietOwner(), 0, 0, 0); }},
    {"ConvertColor 24 to 32", Convert<24, 32>},
    {"ConvertColor 32 to 24", Convert<32, 24>},
    {"ConvertColor 24 to 16", Convert<24, 16>},
    {"ConvertColor 16 to 24", Convert<16, 24>},
    {"ConvertColor 8 to 24", Convert<8, 24>},
    {"ConvertColor 8 to grey", Convert<8, QV8_DEPTH_GREY>},
    {"ConvertColor 24 to grey", Convert<24, QV8_DEPTH_GREY>},
    {"ConvertColor 24 to 256", Convert<24, 8>},
    {"ConvertColor 24 to 256 dithered", Convert<24, 8, 0, 1>},
    {"ConvertColor 24 to 216", Convert<24, 8, 1, 0>},
    {"ConvertColor 24 to 216 dithered", Convert<24, 8, 1, 1>},
    {"ConvertColor 24 to 16 colours", Convert<24, 4>},
    {"ConvertColor 24 to 16 colours dithered", Convert<24, 4, 0, 1>},
    {"ConvertColor 24 to 2", Convert<24, 1>},
    {"ConvertColor 24 to 2 dithered", Convert<24, 1, 0, 1>},
    {"ConvertColor grey to 2 dithered", Convert<8, 1, 0, 1>},
};

} // namespace

std::span<const Row> ColourRows() {
    return kRows;
}

} // namespace bench
