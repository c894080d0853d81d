// What other files of this folder need of the memory besides the public calls.
#pragma once

#include "qv8platform.h"

namespace qv8platform {

// GlobalFree under a name that no program can put its own definition in front of: for blocks that the platform owns.
void FreeBlock(HGLOBAL block);

} // namespace qv8platform
