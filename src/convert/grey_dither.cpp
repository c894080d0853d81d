#include "convert/grey_dither.h"

#include <algorithm>
#include <utility>

#include "frame/rows.h"
#include "pixels/indices.h"

namespace qv8 {
namespace {

// What a pixel becomes and hands on, all of which follows from its level with errors.
struct Fate {
    short next;
    short behind;
    short straight;
    short ahead;
};

// A level is at most 255 beyond either end: nine sixteenths of an error may come from above, seven from the side.
constexpr int kReach = 256;

struct Fates {
    Fate of[kReach + 256 + kReach];
    BYTE index[kReach + 256 + kReach];

    explicit Fates(BYTE threshold) {
        for (int i = 0; i != kReach + 256 + kReach; ++i) {
            const int level = std::clamp(i - kReach, 0, 255);
            index[i] = level >= threshold ? 1 : 0;
            const int error = level - 255 * index[i];
            of[i] = {static_cast<short>(error * 7 / 16), static_cast<short>(error * 3 / 16),
                     static_cast<short>(error * 5 / 16), static_cast<short>(error / 16)};
        }
    }
};

// Walks one row in scan direction `step` and turns its indices into new ones. What the row below gets is complete, and
// stored, one pixel later.
void DitherRow(const Fates& fates, const RGBQUAD* palette, const MappingRows& rows, int width, int step) {
    const short* const current = rows.errors[0];
    short* const below = rows.errors[1];
    BYTE* const indices = rows.indices;
    int carried = 0;
    int behind = 0;   // to the pixel below the one before, so far
    int straight = 0; // to the pixel below this one, so far
    int x = step > 0 ? 0 : width - 1;
    for (int i = 0; i < width; ++i, x += step) {
        const int level = palette[indices[x]].rgbGreen + current[x] + kReach + carried;
        const Fate& fate = fates.of[level];
        indices[x] = fates.index[level];
        carried = fate.next;
        below[x - step] = static_cast<short>(behind + fate.behind);
        behind = straight + fate.straight;
        straight = fate.ahead;
    }
    below[x - step] = static_cast<short>(behind);
}

} // namespace

bool IsGreyReader(const ColourReader& reader) {
    return reader.picture.IsPaletted() &&
           std::all_of(std::begin(reader.palette.colours), std::end(reader.palette.colours), [](const RGBQUAD& colour) {
               return colour.rgbBlue == colour.rgbGreen && colour.rgbGreen == colour.rgbRed;
           });
}

bool DitherGreys(const ColourReader& reader, BYTE threshold, MappingRows& rows, const NewPicture& result,
                 const Progress& progress) {
    const Fates fates(threshold);
    const DibView& view = result.view;
    return ForEachRow(view.height, progress, [&](int row) {
        UnpackIndices(reader.picture.bitCount, reader.picture.Row(row), 0, view.width, rows.indices);
        std::swap(rows.errors[0], rows.errors[1]);
        DitherRow(fates, reader.palette.colours, rows, view.width, row % 2 == 0 ? 1 : -1);
        PackIndices(1, rows.indices, view.width, result.Row(row), 0);
    });
}

} // namespace qv8
