// The code of the two stb headers, compiled once and without this project's warnings.
#include "pictures/stb_memory.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

struct {
    std::size_t largestBlock = SIZE_MAX;
    bool reached = false;
    bool isShort = false;
} memory;

bool IsAllowed(std::size_t size) {
    memory.reached = memory.reached || size > memory.largestBlock;
    return size <= memory.largestBlock;
}

void* Noted(void* block) {
    memory.isShort = memory.isShort || block == nullptr;
    return block;
}

// Zeroed: a damaged file makes the decoder read tables and pixels that it never wrote.
void* DecoderAllocate(std::size_t size) {
    return IsAllowed(size) ? Noted(std::calloc(size != 0 ? size : 1, 1)) : nullptr;
}

void* DecoderReallocate(void* block, std::size_t size) {
    return IsAllowed(size) ? Noted(std::realloc(block, size)) : nullptr;
}

// The encoder writes through null pointers when memory is short, so it must not be given one.
void* EncoderReallocate(void* block, std::size_t size) {
    void* const larger = std::realloc(block, size);
    if (larger == nullptr) {
        throw std::bad_alloc();
    }
    return larger;
}

} // namespace

DecoderMemoryLimit::DecoderMemoryLimit(std::size_t largestBlock) {
    memory = {largestBlock, false, false};
}

DecoderMemoryLimit::~DecoderMemoryLimit() {
    memory = {SIZE_MAX, false, false};
}

bool DecoderMemoryLimit::WasReached() const {
    return memory.reached;
}

bool DecoderMemoryLimit::WasShort() const {
    return memory.isShort;
}

#define STBI_MALLOC(size) DecoderAllocate(size)
#define STBI_REALLOC(block, size) DecoderReallocate(block, size)
#define STBI_FREE(block) std::free(block)
#define STB_IMAGE_IMPLEMENTATION
#include <stb/stb_image.h>

#define STBIW_MALLOC(size) EncoderReallocate(nullptr, size)
#define STBIW_REALLOC(block, size) EncoderReallocate(block, size)
#define STBIW_FREE(block) std::free(block)
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>
