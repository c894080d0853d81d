#include "hidden/secret_image.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "area/area.h"
#include "area/area_mask.h"
#include "frame/span.h"
#include "frame/status.h"
#include "hidden/marking_kernels.h"
#include "pixels/indices.h"
#include "pixels/luminance_kernels.h"
#include "pixels/pixel_format.h"
#include "pixels/planar_chunks.h"
#include "pixels/write_rows.h"

namespace qv8 {
namespace {

constexpr std::size_t kMaxText = 128;
constexpr std::size_t kMaxFaceName = 32;

int AsStep(int difference) {
    return std::clamp(difference, -kMaxLuminanceStep, kMaxLuminanceStep);
}

// --- Marking ---------------------------------------------------------------------------------------------------------

// A pattern on a picture. `columnShift` and `rowShift` lead from a place in the picture to the one in the pattern; rows
// count from the bottom. `columns` are those of the picture under the pattern.
struct Overlay {
    DibView pattern;
    std::int64_t columnShift;
    std::int64_t rowShift;
    Span columns;
};

Overlay PlaceOn(const DibView& picture, const DibView& pattern, int left, int top) {
    const std::int64_t column = left;
    const std::int64_t lastRow = std::int64_t{picture.height} - 1 - top;
    const auto inPicture = [&](std::int64_t x) {
        return static_cast<int>(std::clamp<std::int64_t>(x, 0, picture.width));
    };
    return {pattern, -column, pattern.height - 1 - lastRow, {inPicture(column), inPicture(column + pattern.width)}};
}

// Marks `count` pixels of a row where the pattern's row, from `column` on, has its bits set.
void MarkPixels(const PixelFormat& format, const BYTE* patternRow, int column, int strength, const BYTE* source,
                BYTE* result, int count) {
    PlanarChunk colours;
    BYTE selected[kChunkPixels + 8];
    ForEachChunk(count, [&](int start, int part) {
        const int aligned = (column + start) & ~7;
        const BYTE* const isSelected = selected + (column + start - aligned);
        UnpackIndices(1, patternRow, aligned, column + start - aligned + part, selected);
        if (std::memchr(isSelected, 1, static_cast<std::size_t>(part)) == nullptr) {
            return;
        }
        const std::size_t offset = format.BytesOf(start);
        format.Decode(source + offset, colours.Row(), part);
        TheMarkingKernels().raise(strength, isSelected, colours.Row(), part);
        format.Encode(colours.Row(), result + offset, part);
    });
}

HGLOBAL MarkPicture(const DibView& source, const Overlay& overlay, int strength, const Progress& progress) {
    const PixelFormat format = PixelFormatOf(source);
    const std::size_t begin = format.BytesOf(overlay.columns.begin);
    return WriteRows(DuplicateDib(source, InitialPixels::kUnwritten), progress, [&](int row, BYTE* resultRow) {
        std::memcpy(resultRow, source.Row(row), source.stride);
        const std::int64_t patternRow = row + overlay.rowShift;
        if (patternRow >= 0 && patternRow < overlay.pattern.height && !overlay.columns.IsEmpty()) {
            MarkPixels(format, overlay.pattern.Row(static_cast<int>(patternRow)),
                       static_cast<int>(overlay.columns.begin + overlay.columnShift), strength, source.Row(row) + begin,
                       resultRow + begin, overlay.columns.Count());
        }
    });
}

HGLOBAL MarkWithPicture(const DibView& source, const SecretMark& mark, int strength, const Progress& progress) {
    Picture pattern;
    if (!OpenPicture(mark.pattern, kAccept1, pattern)) {
        return nullptr;
    }
    return MarkPicture(source, PlaceOn(source, pattern.view, mark.rect.left, mark.rect.top), strength, progress);
}

// Copies a text that ends within the buffer; the rest becomes zeros. False for any other.
template <std::size_t kSize>
bool CopyText(LPCSTR text, char (&buffer)[kSize]) {
    const auto* const end = static_cast<LPCSTR>(std::memchr(text, 0, kSize));
    std::fill(std::begin(buffer), std::end(buffer), '\0');
    if (end != nullptr) {
        std::copy(text, end, buffer);
    }
    return end != nullptr;
}

HGLOBAL MarkWithText(const DibView& source, const SecretMark& mark, int strength, const Progress& progress) {
    char text[kMaxText + 1];
    char faceName[kMaxFaceName + 1];
    if (mark.text == nullptr || !CopyText(mark.text, text) ||
        !CopyText(mark.faceName != nullptr ? mark.faceName : "", faceName)) {
        return Fail(QV8_STATUS_PARAMETER);
    }
    const RECT rect = RectWithin(source, mark.rect);
    NewPicture made = NewMask(rect.right - rect.left + 1, rect.bottom - rect.top + 1);
    if (!made) {
        return nullptr;
    }
    const GlobalBlock block(made.Release());
    Picture pattern;
    if (!DrawTextPattern(block.get(), text, faceName, mark.style) || !OpenPicture(block.get(), kAccept1, pattern)) {
        return nullptr;
    }
    return MarkPicture(source, PlaceOn(source, pattern.view, rect.left, rect.top), strength, progress);
}

// --- Checking --------------------------------------------------------------------------------------------------------

// Marks `count` pixels of the result, from its first on, whose luminance has risen by the threshold.
void CheckPixels(int threshold, const BYTE* unmarked, const BYTE* marked, BYTE* result, int count) {
    BYTE before[kChunkPixels];
    BYTE after[kChunkPixels];
    BYTE risen[kChunkPixels];
    ForEachChunk(count, [&](int start, int part) {
        const std::ptrdiff_t offset = std::ptrdiff_t{start} * 3;
        TheLuminanceKernels().luminance24(unmarked + offset, before, part);
        TheLuminanceKernels().luminance24(marked + offset, after, part);
        TheMarkingKernels().risen(threshold, before, after, risen, part);
        PackIndices(1, risen, part, result, start);
    });
}

} // namespace

HGLOBAL SetSecretImage(HGLOBAL image, const SecretMark& mark, int strength, const Progress& progress) {
    Picture source;
    if (!OpenPicture(image, kAccept24, source)) {
        return nullptr;
    }
    const auto markWith = mark.pattern != nullptr ? MarkWithPicture : MarkWithText;
    return markWith(source.view, mark, AsStep(strength), progress);
}

HGLOBAL CheckSecretImage(HGLOBAL unmarked, HGLOBAL marked, int threshold, const Progress& progress) {
    if (unmarked == nullptr || marked == nullptr) {
        return Fail(QV8_STATUS_PICTURE);
    }
    Picture before;
    Picture after;
    if (!OpenPicture(unmarked, kAccept24, before) || !OpenPicture(marked, kAccept24, after)) {
        return nullptr;
    }
    const DibView& view = before.view;
    if (view.width != after.view.width || view.height != after.view.height) {
        return Fail(QV8_STATUS_PICTURE);
    }
    const int step = AsStep(threshold);
    return WriteRows(NewMask(view.width, view.height), progress, [&](int row, BYTE* resultRow) {
        CheckPixels(step, view.Row(row), after.view.Row(row), resultRow, view.width);
    });
}

} // namespace qv8
