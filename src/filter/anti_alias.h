// The mean of each pixel and its left and right neighbours.
#pragma once

#include "filter/filter_frame.h"

namespace qv8 {

// QV8AntiAlias. Returns a new picture, or 0 with its status set.
HGLOBAL AntiAlias(const ImageSet& target, const AreaArguments& area, DWORD progressOwner);

} // namespace qv8
