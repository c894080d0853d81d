#include "photo_codec.h"

#include <climits>
#include <memory>

#include <stb/stb_image.h>
#include <stb/stb_image_write.h>

namespace {

constexpr std::size_t kLargestJpegSide = 65535;

using Samples = std::unique_ptr<BYTE, void (*)(void*)>;

std::string Reason() {
    const char* const reason = stbi_failure_reason();
    return std::string("it cannot be decoded") + (reason != nullptr ? std::string(": ") + reason : std::string());
}

void Append(void* context, void* data, int size) {
    auto& bytes = *static_cast<std::vector<BYTE>*>(context);
    const BYTE* const from = static_cast<const BYTE*>(data);
    bytes.insert(bytes.end(), from, from + size);
}

PhotoReading Refused(const std::string& reason) {
    return {Picture(), reason};
}

// The encoder counts bytes in an int, a row's filter byte included.
bool FitsEncoder(const PlainImage& image) {
    return (std::uint64_t{image.width} * image.channels + 1) * image.height <= INT_MAX / 2;
}

} // namespace

bool LooksLikePng(const BYTE* bytes, std::size_t size) {
    return size >= 4 && bytes[0] == 0x89 && bytes[1] == 'P' && bytes[2] == 'N' && bytes[3] == 'G';
}

bool LooksLikeJpeg(const BYTE* bytes, std::size_t size) {
    return size >= 3 && bytes[0] == 0xFF && bytes[1] == 0xD8 && bytes[2] == 0xFF;
}

PhotoReading ReadPhoto(const BYTE* bytes, std::size_t size, std::uint64_t maxPixels) {
    if (size > INT_MAX) {
        return Refused("it is too large");
    }
    int width = 0;
    int height = 0;
    int channels = 0;
    if (stbi_info_from_memory(bytes, static_cast<int>(size), &width, &height, &channels) == 0) {
        return Refused(Reason());
    }
    if (static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height) > maxPixels) {
        return Refused(std::to_string(width) + " x " + std::to_string(height) + " pixels are above the limit of " +
                       std::to_string(maxPixels));
    }
    const Samples samples(stbi_load_from_memory(bytes, static_cast<int>(size), &width, &height, &channels, 0),
                          stbi_image_free);
    if (!samples) {
        return Refused(Reason());
    }
    Picture picture = PictureFromSamples(samples.get(), static_cast<std::size_t>(width),
                                         static_cast<std::size_t>(height), static_cast<std::size_t>(channels));
    return picture ? PhotoReading{std::move(picture), {}} : Refused("out of memory");
}

std::vector<BYTE> EncodePng(const PlainImage& image) {
    std::vector<BYTE> bytes;
    if (!FitsEncoder(image) ||
        stbi_write_png_to_func(Append, &bytes, static_cast<int>(image.width), static_cast<int>(image.height),
                               static_cast<int>(image.channels), image.samples.data(), 0) == 0) {
        return {};
    }
    return bytes;
}

std::vector<BYTE> EncodeJpeg(const PlainImage& image, int quality) {
    std::vector<BYTE> bytes;
    if (!FitsEncoder(image) || image.width > kLargestJpegSide || image.height > kLargestJpegSide ||
        stbi_write_jpg_to_func(Append, &bytes, static_cast<int>(image.width), static_cast<int>(image.height),
                               static_cast<int>(image.channels), image.samples.data(), quality) == 0) {
        return {};
    }
    return bytes;
}
