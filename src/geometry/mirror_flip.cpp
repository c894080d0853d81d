#include "geometry/mirror_flip.h"

#include <algorithm>
#include <cstring>

#include "frame/rows.h"
#include "pixels/pixel_unit.h"
#include "pixels/planar_chunks.h"

namespace qv8 {
namespace {

// Writes a row from the right to the left, from a copy of it, with nothing behind the last pixel.
void MirrorRow(const NewPicture& picture, BYTE* row, BYTE* copy) {
    const DibView& view = picture.view;
    const PixelUnit& unit = *view.layout->unit;
    std::memcpy(copy, row, view.stride);
    DibView copied = view;
    copied.pixels = copy;
    copied.height = 1;
    BYTE pixels[kChunkPixels * 4];
    ForEachChunk(view.width, [&](int start, int count) {
        unit.copyLine(copied, view.width - 1 - start, 0, -1, 0, count, pixels);
        StorePixels(view, pixels, count, row, start);
    });
    ClearPadding(view, row);
}

void SwapRows(const NewPicture& picture, int row, int other) {
    std::swap_ranges(picture.Row(row), picture.Row(row) + picture.view.stride, picture.Row(other));
}

} // namespace

bool MirrorDib(NewPicture& picture, NewPicture* mask, const Progress& progress) {
    const std::size_t maskStride = mask != nullptr ? mask->view.stride : 0;
    const LockedBlock copy = AllocateWorkingBlock(std::max(picture.view.stride, maskStride));
    if (!copy) {
        return false;
    }
    return ForEachRow(picture.view.height, progress, [&](int row) {
        MirrorRow(picture, picture.Row(row), copy.As<BYTE>());
        if (mask != nullptr) {
            MirrorRow(*mask, mask->Row(row), copy.As<BYTE>());
        }
    });
}

bool FlipDib(NewPicture& picture, NewPicture* mask, const Progress& progress) {
    const int height = picture.view.height;
    return ForEachRow(height, progress, [&](int row) {
        const int other = height - 1 - row;
        if (row >= other) {
            return; // exchanged already
        }
        SwapRows(picture, row, other);
        if (mask != nullptr) {
            SwapRows(*mask, row, other);
        }
    });
}

} // namespace qv8
