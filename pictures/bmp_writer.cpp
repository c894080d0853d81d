// Writing of BMP files, and the format as a whole.
#include <array>
#include <cstring>

#include "pictures/bmp.h"

namespace {

// The file header and the picture's own, which is as it is in the block but for a resolution that is known otherwise.
std::array<BYTE, kBmpFileHeaderBytes + sizeof(BITMAPINFOHEADER)> Headers(const LockedPicture& picture,
                                                                         const Metadata& metadata, bool strip) {
    std::array<BYTE, kBmpFileHeaderBytes + sizeof(BITMAPINFOHEADER)> headers{'B', 'M'};
    const auto put = [&headers](std::size_t at, std::size_t value) {
        for (std::size_t i = 0; i < 4; ++i) {
            headers[at + i] = static_cast<BYTE>(value >> (8 * i));
        }
    };
    put(2, kBmpFileHeaderBytes + picture.Size());
    put(10, kBmpFileHeaderBytes + picture.PixelOffset());
    BITMAPINFOHEADER header = picture.Header();
    if (strip || (header.biXPelsPerMeter == 0 && header.biYPelsPerMeter == 0)) {
        header.biXPelsPerMeter = static_cast<LONG>(metadata.xPixelsPerMetre);
        header.biYPelsPerMeter = static_cast<LONG>(metadata.yPixelsPerMetre);
    }
    std::memcpy(headers.data() + kBmpFileHeaderBytes, &header, sizeof header);
    return headers;
}

void WriteBmp(const Picture& picture, const Metadata& metadata, const WriteOptions& options, const Sink& sink) {
    const LockedPicture locked(picture);
    const auto headers = Headers(locked, metadata, options.strip);
    sink(headers.data(), headers.size());
    sink(locked.Bytes() + sizeof(BITMAPINFOHEADER), locked.Size() - sizeof(BITMAPINFOHEADER));
}

std::string Library() {
    return "of its own";
}

constexpr const char* kEndings[] = {"bmp", "dib"};

} // namespace

const Codec kBmpCodec{ImageFormat::kBmp, "BMP",    kEndings, kHoldsAlpha | kHoldsResolution, IsBmp,
                      ReadBmp,           WriteBmp, Library};
