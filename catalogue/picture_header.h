// A look at a picture, as far as words about it need one.
#ifndef QV8_CATALOGUE_PICTURE_HEADER_H
#define QV8_CATALOGUE_PICTURE_HEADER_H

#include <optional>

#include "catalogue/effect.h"

namespace catalogue {

// The header of a picture, or nothing when the block holds none.
std::optional<BITMAPINFOHEADER> HeaderOf(HGLOBAL picture);

// Whether the effects know the layout of its pixels: any but strange channel masks.
bool HasKnownLayout(HGLOBAL picture);

// Whether it has 8 bits and a colour table of all grey levels, in any order.
bool HasGreyRamp(HGLOBAL picture);

bool IsAmong(Depths depths, HGLOBAL picture);

} // namespace catalogue

#endif
