// Objects on the heap of a library without exceptions.
#pragma once

#include <cstdlib>

namespace qv8 {

// A type that derives from this gets null from `new` when memory is short. The compiler's own `new` throws, and the
// code behind that draws a thread library into the file on Windows.
struct NullWhenMemoryIsShort {
    static void* operator new(std::size_t bytes) noexcept {
        return std::malloc(bytes);
    }
    static void operator delete(void* object) noexcept {
        std::free(object);
    }
};

struct FreeDeleter {
    void operator()(void* memory) const {
        std::free(memory);
    }
};

} // namespace qv8
