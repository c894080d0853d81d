#include "pictures/photo_codec.h"

#include <algorithm>
#include <climits>
#include <memory>

#include <stb/stb_image.h>
#include <stb/stb_image_write.h>

#include "pictures/photo_header.h"
#include "pictures/stb_memory.h"

namespace {

constexpr std::size_t kLargestJpegSide = 65535;

using Samples = std::unique_ptr<BYTE, void (*)(void*)>;

std::string Reason(const DecoderMemoryLimit& limit) {
    if (limit.WasReached()) {
        return "there is more in it than its header says";
    }
    if (limit.WasShort()) {
        return "out of memory";
    }
    const char* const known = stbi_failure_reason();
    const std::string reason = known != nullptr ? known : "";
    const auto isPrintable = [](char c) { return c >= ' ' && c <= '~'; }; // it may quote the file
    const bool isWords = !reason.empty() && std::all_of(reason.begin(), reason.end(), isPrintable);
    return "it cannot be decoded" + (isWords ? ": " + reason : std::string());
}

// The decoder keeps at most 8 bytes of a pixel in a block, in pictures of whole units of 32 x 32 pixels, and doubles a
// block that is too small; the compressed data it collects in a block of their own. Its tables take the last part.
std::size_t LargestBlockFor(const PhotoHeader& header, std::size_t fileSize) {
    constexpr std::uint64_t kTables = 1 << 16;
    const std::uint64_t pixels = (header.width + 32) * (header.height + 32);
    const std::uint64_t block = std::min(pixels, std::uint64_t{1} << 32) * 16 + 2 * fileSize + kTables;
    return static_cast<std::size_t>(std::min<std::uint64_t>(block, SIZE_MAX));
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

PhotoReading ReadPhoto(const BYTE* bytes, std::size_t size, std::uint64_t maxPixels) {
    if (size > INT_MAX) {
        return Refused("it is too large");
    }
    PhotoHeader header;
    if (const std::string objection = CheckPhotoHeader(bytes, size, maxPixels, header); !objection.empty()) {
        return Refused(objection);
    }
    const DecoderMemoryLimit limit(LargestBlockFor(header, size));
    int width = 0;
    int height = 0;
    int channels = 0;
    const Samples samples(stbi_load_from_memory(bytes, static_cast<int>(size), &width, &height, &channels, 0),
                          stbi_image_free);
    if (!samples) {
        return Refused(Reason(limit));
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
