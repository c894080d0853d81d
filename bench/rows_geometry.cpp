#include <algorithm>

#include "rows.h"

namespace bench {
namespace {

HGLOBAL Keep(const ImageSet& set) {
    GlobalFree(set.hMask);
    return set.hImage;
}

template <int kPercent, DWORD kSmooth>
HGLOBAL Resize(const Scene& scene) {
    const ImageSet target = {scene.Picture(), nullptr};
    return QV8Resize(&target, std::max(scene.width * kPercent / 100, 1), std::max(scene.height * kPercent / 100, 1),
                     kSmooth, QuietOwner(), 0, 0, 0)
        .hImage;
}

HGLOBAL ResizeEx(const Scene& scene) {
    const ImageSet target = {scene.Picture(), nullptr};
    ImageSet result = {};
    QV8ResizeEx(&target, &result, scene.width, scene.height, 0, QuietOwner(), 0, 0, 0);
    return result.hImage;
}

template <LONG kAngle, DWORD kSmooth, QV8BOOL kMirror = 0, QV8BOOL kFlip = 0>
HGLOBAL Rotate(const Scene& scene) {
    const ImageSet target = {scene.Picture(), nullptr};
    return QV8Rotation(&target, kAngle, kMirror, kFlip, kSmooth, 30, 60, 90, 0, QuietOwner(), 0, 0, 0).hImage;
}

HGLOBAL RotateEx(const Scene& scene) {
    const ImageSet target = {scene.Picture(), nullptr};
    ImageSet result = {};
    QV8RotationEx(&target, &result, 18000, 0, 0, 0, 30, 60, 90, 0, QuietOwner(), 0, 0, 0);
    return result.hImage;
}

// Corners in thousandths of the sides: upper left, upper right, lower right, lower left.
template <int kX1, int kY1, int kX2, int kY2, int kX3, int kY3, int kX4, int kY4>
HGLOBAL Straighten(const Scene& scene) {
    const auto x = [&](int part) { return static_cast<LONG>(scene.width * part / 1000); };
    const auto y = [&](int part) { return static_cast<LONG>(scene.height * part / 1000); };
    return QV8Affine(scene.Picture(), x(kX1), y(kY1), x(kX2), y(kY2), x(kX3), y(kY3), x(kX4), y(kY4), QuietOwner(), 0,
                     0, 0);
}

HGLOBAL SelectEllipse(const Scene& scene) {
    const RECT rect = {0, 0, scene.width, scene.height};
    return Keep(
        QV8SelectImage(scene.Picture(), QV8_AREA_ELLIPSE, nullptr, 0, &rect, 1, 1, 2, 3, QuietOwner(), 0, 0, 0));
}

HGLOBAL SelectEx(const Scene& scene) {
    ImageSet result = {};
    QV8SelectImageEx(scene.Picture(), &result, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 1, 2, 3, QuietOwner(), 0, 0, 0);
    return Keep(result);
}

template <DWORD kMode>
HGLOBAL AutoSelect(const Scene& scene) {
    return Keep(QV8AutoSelectImage(scene.Picture(), QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 120, 120, 120, kMode, 40,
                                   QuietOwner(), 0, 0, 0));
}

HGLOBAL AutoSelectEx(const Scene& scene) {
    ImageSet result = {};
    QV8AutoSelectImageEx(scene.Picture(), &result, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 120, 120, 120, 1, 40,
                         QuietOwner(), 0, 0, 0);
    return Keep(result);
}

constexpr Row kRows[] = {
    {"Resize x2 smooth", Resize<200, 1>},
    {"Resize x0.9 smooth", Resize<90, 1>},
    {"Resize x0.7 smooth", Resize<70, 1>},
    {"Resize x0.5 smooth", Resize<50, 1>},
    {"Resize x0.37 smooth", Resize<37, 1>},
    {"Resize x2", Resize<200, 0>},
    {"Resize x0.5", Resize<50, 0>},
    {"ResizeEx x1", ResizeEx},
    {"Rotation 90", Rotate<9000, 0>},
    {"RotationEx 180", RotateEx},
    {"Rotation mirror", Rotate<0, 0, 1>},
    {"Rotation flip", Rotate<0, 0, 0, 1>},
    {"Rotation 30", Rotate<3000, 0>},
    {"Rotation 30 smooth", Rotate<3000, 1>},
    {"Affine turned page", Straighten<31, 148, 937, 19, 979, 852, 73, 981>},
    {"Affine slanted page", Straighten<104, 56, 896, 93, 969, 981, 47, 944>},
    {"SelectImage ellipse", SelectEllipse},
    {"SelectImageEx whole", SelectEx},
    {"AutoSelectImage", AutoSelect<0>},
    {"AutoSelectImageEx colour", AutoSelectEx},
};

} // namespace

std::span<const Row> GeometryRows() {
    return kRows;
}

} // namespace bench
