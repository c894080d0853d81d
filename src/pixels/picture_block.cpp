// Alone in its file, so that the benchmarks can put themselves in its place.
#include "frame/status.h"
#include "pixels/dib.h"

namespace qv8 {

LockedBlock AllocatePicture(std::uint32_t bytes, InitialPixels pixels) {
    if (bytes == 0) {
        return Fail(QV8_STATUS_MEMORY);
    }
    return HoldBlock(pixels == InitialPixels::kZero ? GlobalAlloc(GHND, bytes) : AllocateForOverwrite(bytes));
}

} // namespace qv8
