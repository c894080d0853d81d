// The functions of the platform with a count on top: the program's own definitions go before those of shared objects.
#include <dlfcn.h>

#include <algorithm>
#include <utility>

#include "blocks.h"
#include "qv8platform.h"

namespace bench {
namespace {

std::ptrdiff_t taken;
std::ptrdiff_t peak;

} // namespace

std::size_t TakePeak() {
    taken = 0;
    return static_cast<std::size_t>(std::exchange(peak, 0));
}

} // namespace bench

extern "C" {

__attribute__((visibility("default"))) HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes) {
    static const auto next = reinterpret_cast<decltype(&GlobalAlloc)>(dlsym(RTLD_NEXT, "qv8_GlobalAlloc"));
    bench::taken += static_cast<std::ptrdiff_t>(bytes);
    bench::peak = std::max(bench::peak, bench::taken);
    return next(flags, bytes);
}

__attribute__((visibility("default"))) HGLOBAL GlobalFree(HGLOBAL block) {
    static const auto next = reinterpret_cast<decltype(&GlobalFree)>(dlsym(RTLD_NEXT, "qv8_GlobalFree"));
    bench::taken -= static_cast<std::ptrdiff_t>(GlobalSize(block));
    return next(block);
}

} // extern "C"
