// Error diffusion from greys to black and white, where one channel stands for all three.
#pragma once

#include "convert/mapping.h"

namespace qv8 {

// Whether every colour that the reader can give is a grey.
bool IsGreyReader(const ColourReader& reader);

// What MapColours does by threshold with errors kept, for such a reader.
bool DitherGreys(const ColourReader& reader, BYTE threshold, MappingRows& rows, const NewPicture& result,
                 const Progress& progress);

} // namespace qv8
