#include "geometry/affine.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "frame/parts.h"
#include "geometry/affine_kernels.h"
#include "geometry/affine_mapping.h"
#include "pixels/pixel_format.h"
#include "pixels/pixel_unit.h"

namespace qv8 {
namespace {

// Edges as upright as this are not worth a distortion.
bool IsNearlyUpright(const Corners& corners) {
    constexpr LONG kMostSlant = 2;
    return std::abs(corners.lowerLeft.x - corners.upperLeft.x) <= kMostSlant &&
           std::abs(corners.upperRight.x - corners.lowerRight.x) <= kMostSlant &&
           std::abs(corners.upperLeft.y - corners.upperRight.y) <= kMostSlant &&
           std::abs(corners.lowerLeft.y - corners.lowerRight.y) <= kMostSlant;
}

// Here and below a row is read from the one above it, as callers expect: row 0 from the top lies outside. The area that
// is copied may be larger than the result by the slant of its edges; then its upper rows and its right end are left
// out.
bool CopyUpright(const DibView& source, const Corners& corners, const NewPicture& result, const Progress& progress) {
    const auto top = static_cast<int>(corners.upperLeft.y);
    const auto bottom = static_cast<int>(corners.lowerLeft.y);
    const auto width = static_cast<int>(corners.lowerRight.x - corners.lowerLeft.x);
    // A start inside a byte goes back to its first pixel.
    const auto start = static_cast<std::size_t>(std::int64_t{corners.lowerLeft.x} * source.bitCount / 8);
    const auto wanted = static_cast<std::size_t>(DibRowBytes(source.bitCount, width));
    const std::size_t rowBytes = std::min(wanted, result.view.stride);
    const BYTE* const end = source.Row(source.height);
    for (int y = top; y < bottom; ++y) {
        const int row = bottom - 1 - y;
        const BYTE* const line = source.Row(source.height - y);
        const auto available = static_cast<std::size_t>(end - line);
        if (row < result.view.height && available > start) {
            std::memcpy(result.Row(row), line + start, std::min(rowBytes, available - start));
        }
        if (!progress.Report(y, bottom - top)) {
            return false;
        }
    }
    return true;
}

// Each pixel of the area's bounding box goes where it belongs, if that is in the result.
bool Distort(const DibView& source, const Corners& corners, const Patch& patch, const NewPicture& result,
             const Progress& progress) {
    const auto left = static_cast<int>(std::min(corners.lowerLeft.x, corners.upperLeft.x));
    const auto right = static_cast<int>(std::max(corners.upperRight.x, corners.lowerRight.x));
    const auto top = static_cast<int>(std::min(corners.upperLeft.y, corners.upperRight.y));
    const auto bottom = static_cast<int>(std::max(corners.lowerLeft.y, corners.lowerRight.y));
    const PixelUnit& unit = *source.layout->unit;
    const AffineKernels& kernels = TheAffineKernels();
    SpreadPlaces places;
    BYTE pixels[kSpreadPixels * sizeof(DWORD)] = {};
    for (int y = top; y < bottom; ++y) {
        ForEachPart(right - left, kSpreadPixels, [&](int start, int count) {
            const int x = left + start;
            kernels.findPlaces(patch, x, y, count, places);
            if (y > 0) { // row 0 is outside, and its pixels stay the zeros that they are
                unit.copyLine(source, x, source.height - y, 1, 0, count, pixels);
                ReduceToChannels(*source.layout, pixels, count);
            }
            unit.spread(pixels, places.columns, places.rows, count, result);
        });
        // The row itself, not how far it is from the top of the box, as callers expect it.
        if (!progress.Report(y, bottom - top)) {
            return false;
        }
    }
    return true;
}

} // namespace

HGLOBAL StraightenPicture(HGLOBAL image, const POINT* corners, const Progress& progress) {
    Picture picture;
    if (!OpenPicture(image, kAcceptAll, picture)) {
        return nullptr;
    }
    const DibView& source = picture.view;
    const Corners sorted = CornersOf(corners, source.width, source.height);
    const UprightSize size = SizeBetween(sorted);
    NewPicture result = DuplicateDib(source, size.width, size.height, InitialPixels::kZero);
    if (!result) {
        return nullptr;
    }
    bool done = false;
    Patch patch;
    if (IsNearlyUpright(sorted)) {
        done = CopyUpright(source, sorted, result, progress);
    } else if (MakePatch(sorted, size, patch)) {
        done = Distort(source, sorted, patch, result, progress);
    }
    return done ? result.Release() : nullptr;
}

} // namespace qv8
