// The mean of each pixel and its left and right neighbours.
#pragma once

#include "filter/filter_frame.h"
#include "frame/caller.h"

namespace qv8 {

// QV8AntiAlias. Returns a new picture, or 0 with its status set.
HGLOBAL AntiAlias(const ImageSet& target, const AreaArguments& area, const Caller& caller);

} // namespace qv8
