// The memory of the decoder of PNG and JPEG. It grows with what it finds in a file, however little the file's header
// announces, and so is held to a limit.
#ifndef QV8_PICTURES_STB_MEMORY_H
#define QV8_PICTURES_STB_MEMORY_H

#include <cstddef>

// While it lives, no block of the decoder is larger than a number of bytes. There is one at a time.
class DecoderMemoryLimit {
public:
    explicit DecoderMemoryLimit(std::size_t largestBlock);
    DecoderMemoryLimit(const DecoderMemoryLimit&) = delete;
    DecoderMemoryLimit& operator=(const DecoderMemoryLimit&) = delete;
    ~DecoderMemoryLimit();

    bool WasReached() const; // the decoder asked for a larger block
    bool WasShort() const;   // the system had no memory for a block
};

#endif
