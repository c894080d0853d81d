#include "image_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "bmp.h"
#include "failure.h"
#include "interrupt.h"
#include "output_file.h"
#include "photo_codec.h"
#include "plain_image.h"

namespace {

constexpr std::size_t kLargestFile = 0x7FFFFFFF;
constexpr std::size_t kChunk = std::size_t{1} << 20;

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Failure ReadFailure(const std::string& name, const std::string& reason) {
    return Failure(kExitInput, name + ": cannot be read: " + reason);
}

File OpenForReading(const std::string& name) {
#ifdef _WIN32
    File file(_wfopen(PathOf(name).c_str(), L"rb"), std::fclose);
#else
    File file(std::fopen(name.c_str(), "rb"), std::fclose);
#endif
    if (!file) {
        throw ReadFailure(name, std::strerror(errno));
    }
    return file;
}

// Piece by piece, so that what has no known size, such as a pipe, can be read as well.
std::vector<BYTE> ReadWholeFile(const std::string& name) {
    const File file = OpenForReading(name);
    std::error_code unknown;
    const std::uintmax_t expected = std::filesystem::file_size(PathOf(name), unknown);
    std::vector<BYTE> bytes;
    if (!unknown && expected <= kLargestFile) {
        bytes.reserve(static_cast<std::size_t>(expected) + kChunk);
    }
    for (std::size_t got = kChunk; got == kChunk;) {
        const std::size_t before = bytes.size();
        if (before > kLargestFile) {
            throw ReadFailure(name, "it is too large");
        }
        bytes.resize(before + kChunk);
        got = std::fread(bytes.data() + before, 1, kChunk, file.get());
        bytes.resize(before + got);
    }
    if (std::ferror(file.get()) != 0) {
        throw ReadFailure(name, std::strerror(errno));
    }
    return bytes;
}

LoadedPicture Decode(const std::vector<BYTE>& bytes, const std::string& name, std::uint64_t maxPixels) {
    const auto checked = [&name](auto reading, ImageFormat format) {
        if (!reading.picture) {
            throw ReadFailure(name, reading.error);
        }
        return LoadedPicture{std::move(reading.picture), format};
    };
    const BYTE* const data = bytes.data();
    if (LooksLikeBmp(data, bytes.size())) {
        return checked(ReadBmp(data, bytes.size(), maxPixels), ImageFormat::kBmp);
    }
    if (LooksLikePng(data, bytes.size())) {
        return checked(ReadPhoto(data, bytes.size(), maxPixels), ImageFormat::kPng);
    }
    if (LooksLikeJpeg(data, bytes.size())) {
        return checked(ReadPhoto(data, bytes.size(), maxPixels), ImageFormat::kJpeg);
    }
    throw ReadFailure(name, bytes.empty() ? "it is empty" : "it is not a BMP, PNG or JPEG file");
}

void WriteBmp(OutputFile& file, const Picture& picture) {
    const LockedPicture locked(picture);
    const auto header = BmpFileHeader(locked);
    file.Write(header.data(), header.size());
    file.Write(locked.Bytes(), locked.Size());
}

void WritePhoto(OutputFile& file, const Picture& picture, const std::string& name, ImageFormat format, int quality) {
    const PlainImage image = PlainFromPicture(picture, kExitOutput, name + ": cannot be written: ");
    const std::vector<BYTE> bytes = format == ImageFormat::kPng ? EncodePng(image) : EncodeJpeg(image, quality);
    if (bytes.empty()) {
        throw Failure(kExitOutput, name + ": cannot be written: the picture is too large for " + FormatName(format));
    }
    file.Write(bytes.data(), bytes.size());
}

} // namespace

const char* FormatName(ImageFormat format) {
    return format == ImageFormat::kBmp ? "BMP" : format == ImageFormat::kPng ? "PNG" : "JPEG";
}

LoadedPicture LoadPicture(const std::string& name, std::uint64_t maxPixels) {
    LoadedPicture loaded = Decode(ReadWholeFile(name), name, maxPixels);
    StopIfInterrupted();
    return loaded;
}

ImageFormat FormatForName(const std::string& name) {
    std::string ending = name.substr(std::min(name.rfind('.'), name.size()));
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    if (ending == ".bmp") {
        return ImageFormat::kBmp;
    }
    if (ending == ".png") {
        return ImageFormat::kPng;
    }
    if (ending == ".jpg" || ending == ".jpeg") {
        return ImageFormat::kJpeg;
    }
    throw Failure(kExitUsage, name + ": the name of the output must end in .bmp, .png, .jpg or .jpeg");
}

void SavePicture(const Picture& picture, const std::string& name, ImageFormat format, int quality) {
    OutputFile file(name);
    if (format == ImageFormat::kBmp) {
        WriteBmp(file, picture);
    } else {
        WritePhoto(file, picture, name, format, quality);
    }
    StopIfInterrupted();
    file.Commit();
}
