// Rows of a picture that is cut out of another: the pixels of an area, and a background around them.
#pragma once

#include "area/area.h"
#include "pixels/pixel_fill.h"

namespace qv8 {

// How the pixels of the area are copied: as they are, or as a way through channels would leave them.
enum class PixelCopy { kExact, kThroughChannels };

// ResolveArea for selections, which are always made from shapes: area type 0 sets status 5.
bool ResolveShape(const DibView& picture, const AreaArguments& arguments, Area& area);

// A new picture the size of the area's box, with rows still to be written. Sets status 3 or 5.
NewPicture CreateCutOut(const DibView& source, const Area& area);

// Writes all of the result's row that `row` of the source becomes, which is one of the area's rows. The background is a
// packed pattern.
void CutRow(const DibView& source, const Area& area, const PixelPattern& background, PixelCopy copy, int row,
            const NewPicture& result);

} // namespace qv8
