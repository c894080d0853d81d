// Watches the blocks of global memory that calls take, and on Windows keeps freed ones as the native platform does.
#pragma once

#include <cstddef>

namespace bench {

// The most bytes that were taken at once since the last call of this, of what was taken since then.
std::size_t TakePeak();

} // namespace bench
