#include "pictures/photo_header.h"

namespace {

// Deflate makes at most 1032 bytes of one, and PNG keeps at most 8 pixels in a byte. In JPEG a block of 8 x 8 samples
// takes a bit at least, and there are no fewer than one block for 128 pixels.
constexpr std::uint64_t kMostPngPixelsInAByte = 8 * 1032;
constexpr std::uint64_t kMostJpegPixelsInAByte = 8 * 128;

// Encoders make about ten.
constexpr std::uint64_t kMostScans = 100;

enum Marker : unsigned {
    kStartOfFrame = 0xC0, // three of them are known to the decoder
    kProgressiveFrame = 0xC2,
    kRestart = 0xD0, // eight of them
    kStartOfImage = 0xD8,
    kEndOfImage = 0xD9,
    kStartOfScan = 0xDA,
    kFill = 0xFF
};

std::uint64_t BigEndian(const BYTE* bytes, std::size_t count) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value = value << 8 | bytes[i];
    }
    return value;
}

bool ReadPngHeader(const BYTE* bytes, std::size_t size, PhotoHeader& header) {
    constexpr std::size_t kSizeEnd = 24; // signature, length and name of the first chunk, width, height
    if (size < kSizeEnd || std::string(bytes + 12, bytes + 16) != "IHDR") {
        return false;
    }
    header.width = BigEndian(bytes + 16, 4);
    header.height = BigEndian(bytes + 20, 4);
    return true;
}

// The place of the next marker's second byte. Within the data of a scan a byte FF is no marker when 00 or the number of
// a restart follows.
std::size_t NextMarker(const BYTE* bytes, std::size_t size, std::size_t at) {
    for (; at + 1 < size; ++at) {
        const unsigned second = bytes[at + 1];
        const bool inData = second == 0 || (second >= kRestart && second < kStartOfImage) || second == kFill;
        if (bytes[at] == 0xFF && !inData) {
            return at + 1;
        }
    }
    return size;
}

bool ReadJpegHeader(const BYTE* bytes, std::size_t size, PhotoHeader& header) {
    for (std::size_t at = NextMarker(bytes, size, 2); at + 2 < size; at = NextMarker(bytes, size, at)) {
        const unsigned marker = bytes[at];
        if (marker == kEndOfImage) {
            break;
        }
        if (marker >= kStartOfFrame && marker <= kProgressiveFrame && header.width == 0 && at + 8 <= size) {
            header.height = BigEndian(bytes + at + 4, 2);
            header.width = BigEndian(bytes + at + 6, 2);
        }
        header.scans += marker == kStartOfScan ? 1 : 0;
        at += 1 + static_cast<std::size_t>(BigEndian(bytes + at + 1, 2));
    }
    return header.width != 0;
}

} // namespace

bool LooksLikePng(const BYTE* bytes, std::size_t size) {
    return size >= 4 && bytes[0] == 0x89 && bytes[1] == 'P' && bytes[2] == 'N' && bytes[3] == 'G';
}

bool LooksLikeJpeg(const BYTE* bytes, std::size_t size) {
    return size >= 3 && bytes[0] == 0xFF && bytes[1] == 0xD8 && bytes[2] == 0xFF;
}

std::string CheckPhotoHeader(const BYTE* bytes, std::size_t size, std::uint64_t maxPixels, PhotoHeader& header) {
    const bool isPng = LooksLikePng(bytes, size);
    if (!(isPng ? ReadPngHeader(bytes, size, header) : ReadJpegHeader(bytes, size, header))) {
        return "its header is damaged or cut off";
    }
    const std::uint64_t pixels = header.width * header.height; // sides of 32 bits at most
    const std::string sides = std::to_string(header.width) + " x " + std::to_string(header.height) + " pixels";
    if (pixels == 0) {
        return "it has no valid size";
    }
    if (pixels > maxPixels) {
        return sides + " are above the limit of " + std::to_string(maxPixels);
    }
    if (pixels / (isPng ? kMostPngPixelsInAByte : kMostJpegPixelsInAByte) > size) {
        return "it is too short for " + sides;
    }
    return header.scans > kMostScans ? "it has too many scans" : std::string();
}
