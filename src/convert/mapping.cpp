#include "convert/mapping.h"

#include <cstring>
#include <utility>

#include "convert/grey_dither.h"
#include "convert/mapping_kernels.h"
#include "convert/threshold_kernels.h"
#include "frame/block_parts.h"
#include "frame/rows.h"
#include "pixels/indices.h"
#include "pixels/palettes.h"
#include "qv8com.h"

namespace qv8 {
namespace {

IndexChoice IndexChoiceOf(const Mapping& mapping, const DibView& result) {
    IndexChoice choice = {};
    choice.least = mapping.threshold * 3U;
    choice.inverseMap = mapping.inverseMap;
    for (int i = 0; i != 256; ++i) {
        choice.level[i] = static_cast<BYTE>(i * 5.0 / 255.0 + 0.5);
    }
    for (std::uint32_t i = 0; i < 16 && i < result.paletteSize; ++i) {
        const RGBQUAD& colour = result.palette[i];
        choice.blueAndGreen[i] = colour.rgbBlue | colour.rgbGreen << 16;
        choice.red[i] = colour.rgbRed;
    }
    return choice;
}

struct PaletteTwice {
    ColourTwice colours[256];
};

PaletteTwice PaletteTwiceOf(const DibView& result) {
    PaletteTwice palette = {};
    for (std::uint32_t i = 0; i != result.paletteSize; ++i) {
        const RGBQUAD& colour = result.palette[i];
        const ColourTwice twice = {colour.rgbBlue, colour.rgbGreen, colour.rgbRed, 0,
                                   colour.rgbBlue, colour.rgbGreen, colour.rgbRed, 0};
        std::memcpy(palette.colours[i], twice, sizeof twice);
    }
    return palette;
}

// Black and white without errors, straight from packed pixels to bits.
bool Threshold(const ColourReader& reader, BYTE threshold, MappingRows& rows, const NewPicture& result,
               const Progress& progress) {
    const int width = reader.picture.width;
    return progress.RunWithoutFloats([&] {
        return ForEachRow(reader.picture.height, progress, [&](int row) {
            const BYTE* const pixels = Pixels24(reader, row, 0, width, rows.packed);
            TheThresholdKernels().threshold24(pixels, threshold * 3, width, result.Row(row));
        });
    });
}

} // namespace

MappingRows AllocateMappingRows(int width) {
    const auto pixels = static_cast<std::uint64_t>(width);
    MappingRows rows = {};
    rows.block = AllocateParts([&](BlockParts& parts) {
        for (short*& errors : rows.errors) {
            parts.Take(errors, 4 * (pixels + 2));
        }
        parts.Take(rows.colours.blue, pixels);
        parts.Take(rows.colours.green, pixels);
        parts.Take(rows.colours.red, pixels);
        parts.Take(rows.indices, pixels);
        parts.Take(rows.packed, 4 * pixels);
    });
    if (!rows.block) {
        return rows;
    }
    for (short*& errors : rows.errors) {
        errors += 4; // the pixel beside the first
    }
    return rows;
}

bool MapColours(const ColourReader& reader, const Mapping& mapping, MappingRows& rows, const NewPicture& result,
                const Progress& progress) {
    if (mapping.chooseBy == ChooseBy::kThreshold && !mapping.dither) {
        return Threshold(reader, mapping.threshold, rows, result, progress);
    }
    if (mapping.chooseBy == ChooseBy::kThreshold && IsGreyReader(reader)) {
        return DitherGreys(reader, mapping.threshold, rows, result, progress);
    }
    const DibView& view = result.view;
    const IndexChoice choice = IndexChoiceOf(mapping, view);
    const PaletteTwice palette = PaletteTwiceOf(view);
    const MappingKernels& kernels = TheMappingKernels();
    const auto way = static_cast<std::size_t>(mapping.chooseBy);
    const auto pack = ThePixelKernels().bgrx.encode;
    return ForEachRow(view.height, progress, [&](int row) {
        ReadColours(reader, row, 0, view.width, rows.colours);
        if (mapping.dither) {
            std::swap(rows.errors[0], rows.errors[1]);
            pack(rows.colours, rows.packed, view.width);
            kernels.ditherRow[mapping.keepErrors ? 1 : 0][way](choice, palette.colours, rows, view.width,
                                                               row % 2 == 0 ? 1 : -1);
        } else {
            kernels.mapRow[way](choice, rows, view.width);
        }
        PackIndices(view.bitCount, rows.indices, view.width, result.Row(row), 0);
    });
}

} // namespace qv8
