#include "chains/mask.h"

#include <new>

#include "catalogue/picture_header.h"
#include "pictures/failure.h"
#include "pictures/plain_image.h"

namespace {

constexpr unsigned kMarkedFrom = 128;

// In thousandths, so that no rounding comes into it.
unsigned Luminance(const BYTE* sample, std::size_t channels) {
    return channels == 1 ? 1000U * sample[0] : 299U * sample[0] + 587U * sample[1] + 114U * sample[2];
}

Picture EmptyMask(std::size_t width, std::size_t height) {
    const std::size_t tableBytes = 2 * sizeof(RGBQUAD);
    const auto rows = static_cast<std::size_t>(RowBytes(1, width) * height);
    Picture mask(GlobalAlloc(GHND, sizeof(BITMAPINFOHEADER) + tableBytes + rows));
    if (!mask) {
        throw std::bad_alloc();
    }
    const LockedPicture locked(mask);
    BITMAPINFOHEADER& header = locked.Header();
    header.biSize = sizeof header;
    header.biWidth = static_cast<LONG>(width);
    header.biHeight = static_cast<LONG>(height);
    header.biPlanes = 1;
    header.biBitCount = 1;
    header.biSizeImage = static_cast<DWORD>(rows);
    for (std::size_t i = 4; i < 7; ++i) { // entry 1 is white
        locked.Bytes()[sizeof header + i] = 0xFF;
    }
    return mask;
}

std::string SizeText(const BITMAPINFOHEADER& header) {
    return std::to_string(header.biWidth) + " x " + std::to_string(header.biHeight);
}

Picture MaskFromLuminance(const Picture& picture, const std::string& name) {
    const PlainImage image = PlainFromPicture(picture, kExitInput, name + ": ");
    Picture mask = EmptyMask(image.width, image.height);
    const LockedPicture locked(mask);
    const BYTE* sample = image.samples.data();
    for (std::size_t y = 0; y < image.height; ++y) {
        BYTE* const row = locked.RowFromTop(y);
        for (std::size_t x = 0; x < image.width; ++x, sample += image.channels) {
            if (Luminance(sample, image.channels) >= 1000 * kMarkedFrom) {
                row[x / 8] = static_cast<BYTE>(row[x / 8] | 0x80U >> x % 8);
            }
        }
    }
    return mask;
}

} // namespace

Picture AsMask(Picture picture, const std::string& name) {
    const bool isMask = LockedPicture(picture).Header().biBitCount == 1;
    return isMask ? std::move(picture) : MaskFromLuminance(picture, name);
}

void CheckMaskSize(HGLOBAL mask, const std::string& maskName, HGLOBAL image, const std::string& imageName) {
    const BITMAPINFOHEADER header = catalogue::HeaderOf(mask).value();
    const BITMAPINFOHEADER other = catalogue::HeaderOf(image).value();
    if (header.biWidth != other.biWidth || header.biHeight != other.biHeight) {
        throw Failure(kExitInput, maskName + ": a mask of " + SizeText(header) + " pixels does not fit " + imageName +
                                      " of " + SizeText(other));
    }
}

void InvertMask(const Picture& mask) {
    const LockedPicture locked(mask);
    for (std::size_t i = locked.PixelOffset(); i < locked.Size(); ++i) {
        locked.Bytes()[i] = static_cast<BYTE>(~locked.Bytes()[i]);
    }
}
