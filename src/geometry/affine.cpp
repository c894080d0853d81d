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

// Whether all edges are off the horizontal or vertical by so little that the area is copied as it is.
bool IsNearlyUpright(const Corners& corners) {
    constexpr LONG kMostSlant = 2;
    return std::abs(corners.lowerLeft.x - corners.upperLeft.x) <= kMostSlant &&
           std::abs(corners.upperRight.x - corners.lowerRight.x) <= kMostSlant &&
           std::abs(corners.upperLeft.y - corners.upperRight.y) <= kMostSlant &&
           std::abs(corners.lowerLeft.y - corners.lowerRight.y) <= kMostSlant;
}

// Copies an area whose edges are upright. Rows are taken one too high: where row y of the source, counted from the top,
// is due, the result gets row y - 1, and zeros for row 0. Pictures have always been straightened so.
// The result is the largest rectangle between the edges. Where these slant, the area is up to two pixels larger: its
// upper rows and the right end of its rows are left out.
bool CopyUpright(const DibView& source, const Corners& corners, const NewPicture& result, const Progress& progress) {
    const auto top = static_cast<int>(corners.upperLeft.y);
    const auto bottom = static_cast<int>(corners.lowerLeft.y);
    const auto width = static_cast<int>(corners.lowerRight.x - corners.lowerLeft.x);
    // Whole bytes are copied: of pixels that share one, copying starts with the first.
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

// Writes each pixel of the area's bounding box to its place in the straightened picture, if it has one there. Rows are
// taken one too high, as in CopyUpright.
bool Distort(const DibView& source, const Corners& corners, const Patch& patch, const NewPicture& result,
             const Progress& progress) {
    const auto left = static_cast<int>(std::min(corners.lowerLeft.x, corners.upperLeft.x));
    const auto right = static_cast<int>(std::max(corners.upperRight.x, corners.lowerRight.x));
    const auto top = static_cast<int>(std::min(corners.upperLeft.y, corners.upperRight.y));
    const auto bottom = static_cast<int>(std::max(corners.lowerLeft.y, corners.lowerRight.y));
    const PixelUnit& unit = *source.layout->unit;
    const AffineKernels& kernels = TheAffineKernels();
    ScatterPlaces places;
    BYTE pixels[kScatterPixels * sizeof(DWORD)] = {};
    for (int y = top; y < bottom; ++y) {
        ForEachPart(right - left, kScatterPixels, [&](int start, int count) {
            const int x = left + start;
            kernels.findPlaces(patch, x, y, count, places);
            if (y > 0) { // there is no row above row 0: its pixels count as zeros
                unit.copyLine(source, x, source.height - y, 1, 0, count, pixels);
                ReduceToChannels(*source.layout, pixels, count);
            }
            unit.scatter(pixels, places.columns, places.rows, count, result);
        });
        // Counted from the top of the picture, not of the box: callers know the percentages so.
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
    const Corners sorted = CornersOf(corners, source);
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
