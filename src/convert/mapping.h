// The pass that gives every pixel an index of the new colour table, with or without error diffusion.
#pragma once

#include "frame/progress.h"
#include "pixels/colour_reader.h"

namespace qv8 {

// How an index is chosen for a colour.
enum class ChooseBy {
    kThreshold,   // 1 bit: white from a mean of the threshold on
    kFixedLevels, // 8 bits: the nearest of six levels per channel
    kInverseMap,  // 8 bits: the box that the colour's cell lies in
    kNearest,     // 4 bits: the nearest of the 16 colours
};

struct Mapping {
    ChooseBy chooseBy;
    BYTE threshold;
    const BYTE* inverseMap;
    bool dither;
    bool keepErrors; // errors from the row above stay when the pixel before adds its own; else they are replaced
};

// Working rows for pictures of one width.
struct MappingRows {
    LockedBlock block;
    PlanarRow colours;
    BYTE* indices;
    BYTE* packed;     // the colours of a row as 32-bit pixels with a fourth byte of 0
    short* errors[2]; // four values a pixel, from one pixel before the first to one behind the last
};

// Sets status 3 when memory is short.
MappingRows AllocateMappingRows(int width);

// Maps all pixels to the colour table that `result` has by now. False when cancelled.
bool MapColours(const ColourReader& reader, const Mapping& mapping, MappingRows& rows, const NewPicture& result,
                const Progress& progress);

} // namespace qv8
