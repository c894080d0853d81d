#include "pictures/bmp.h"

std::array<BYTE, kBmpFileHeaderBytes> BmpFileHeader(const LockedPicture& picture) {
    std::array<BYTE, kBmpFileHeaderBytes> header{'B', 'M'};
    const auto put = [&header](std::size_t at, std::size_t value) {
        for (std::size_t i = 0; i < 4; ++i) {
            header[at + i] = static_cast<BYTE>(value >> (8 * i));
        }
    };
    put(2, kBmpFileHeaderBytes + picture.Size());
    put(10, kBmpFileHeaderBytes + picture.PixelOffset());
    return header;
}
