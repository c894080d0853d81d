// What the formats have in common, for the files of this folder that know one each.
#ifndef QV8_PICTURES_CODEC_H
#define QV8_PICTURES_CODEC_H

#include <cstddef>
#include <functional>
#include <span>
#include <stdexcept>
#include <string>

#include "pictures/formats.h"

using ByteView = std::span<const BYTE>;

// Takes the bytes of a file one piece after the other. Throws when it cannot.
using Sink = std::function<void(const void* bytes, std::size_t size)>;

// Why a file is not read, or a picture not written. Becomes a Failure that names the file.
struct Refusal : std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline void Require(bool condition, const std::string& otherwise) {
    if (!condition) {
        throw Refusal(otherwise);
    }
}

// What a file can hold besides colours.
enum Holds : unsigned { kHoldsAlpha = 1, kHoldsProfile = 2, kHoldsExif = 4, kHoldsResolution = 8 };

// A format. `read` throws a Refusal, whatever the bytes; `write` when the picture does not fit.
struct Codec {
    ImageFormat format;
    const char* name;
    std::span<const char* const> endings;
    unsigned holds;
    bool (*recognizes)(ByteView file);
    LoadedPicture (*read)(ByteView file, const ReadOptions& options);
    void (*write)(const Picture& picture, const Metadata& metadata, const WriteOptions& options, const Sink& sink);
    std::string (*library)(); // with its version
};

extern const Codec kBmpCodec;
extern const Codec kPngCodec;
extern const Codec kJpegCodec;
extern const Codec kTiffCodec;
extern const Codec kWebpCodec;

// Refuses a picture without pixels, one of too many, and one that the file is too short for: `mostPixelsInAByte` is
// what the format can pack into a byte, or 0 where there is no such number. Then tells the size to whoever wants it.
void CheckSize(std::uint64_t width, std::uint64_t height, std::size_t fileSize, std::uint64_t mostPixelsInAByte,
               const ReadOptions& options);

// Makes a picture whose pixels are still to be filled in, all of their bytes; the ends of the rows are 0.
Picture NewPicture(std::uint64_t width, std::uint64_t height, unsigned depth, std::span<const RGBQUAD> table = {});

// The grey levels of a depth of up to 8 bits, from black to white.
std::span<const RGBQUAD> GreyRamp(unsigned depth);

// Exchanges the first and the third of every three or four bytes.
void SwapRedAndBlue(BYTE* row, std::size_t width, std::size_t pixelBytes);

// A channel of 16 bits as one of 8, rounded to the nearest.
inline BYTE Rounded(unsigned value16) {
    return static_cast<BYTE>((value16 + 128) / 257);
}

#endif
