// What reading and writing of TIFF files have in common: files in memory, and what the library says about them.
#ifndef QV8_PICTURES_TIFF_CODEC_H
#define QV8_PICTURES_TIFF_CODEC_H

#include <memory>
#include <string>
#include <vector>

#include <tiffio.h>

#include "pictures/codec.h"

// A file in memory. What is read stays where it is; what is written grows here.
class TiffMemory {
public:
    explicit TiffMemory(ByteView file) : read_(file) {}
    TiffMemory() = default;
    TiffMemory(const TiffMemory&) = delete;
    TiffMemory& operator=(const TiffMemory&) = delete;

    // Opens the file for reading ("r") or writing ("w"). The library may take blocks of up to `largestBlock` bytes.
    // Throws a Refusal.
    std::unique_ptr<TIFF, decltype(&TIFFClose)> Open(const char* mode, std::uint64_t largestBlock);

    const std::vector<BYTE>& Written() const {
        return written_;
    }
    // Throws what went wrong last.
    [[noreturn]] void Fail() const;

private:
    struct Operations;

    ByteView read_;
    std::vector<BYTE> written_;
    std::uint64_t place_ = 0;
    bool isShort_ = false; // of memory
    std::string error_;
};

LoadedPicture ReadTiff(ByteView file, const ReadOptions& options);

#endif
