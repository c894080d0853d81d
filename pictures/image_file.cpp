#include "pictures/image_file.h"

#include <algorithm>
#include <new>
#include <stdexcept>
#include <vector>

#include "pictures/bmp.h"
#include "pictures/failure.h"
#include "pictures/input_file.h"
#include "pictures/interrupt.h"
#include "pictures/photo_codec.h"
#include "pictures/photo_header.h"
#include "pictures/plain_image.h"

namespace {

constexpr std::size_t kLargestFile = 0x7FFFFFFF;
bool IsKnownFormat(const std::vector<BYTE>& bytes) {
    return LooksLikeBmp(bytes.data(), bytes.size()) || LooksLikePng(bytes.data(), bytes.size()) ||
           LooksLikeJpeg(bytes.data(), bytes.size());
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
    return checked(ReadPhoto(data, bytes.size(), maxPixels), ImageFormat::kJpeg);
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
    const auto checkFormat = [&name](const std::vector<BYTE>& start) {
        if (!IsKnownFormat(start)) {
            throw ReadFailure(name, start.empty() ? "it is empty" : "it is not a BMP, PNG or JPEG file");
        }
    };
    try {
        LoadedPicture loaded = Decode(ReadWholeFile(name, kLargestFile, checkFormat), name, maxPixels);
        StopIfInterrupted();
        return loaded;
    } catch (const std::bad_alloc&) {
        throw ReadFailure(name, "out of memory");
    } catch (const std::length_error&) { // more than the system has addresses for
        throw ReadFailure(name, "out of memory");
    }
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

std::unique_ptr<OutputFile> PreparePicture(const Picture& picture, const std::string& name, ImageFormat format,
                                           int quality) {
    try {
        auto file = std::make_unique<OutputFile>(name);
        if (format == ImageFormat::kBmp) {
            WriteBmp(*file, picture);
        } else {
            WritePhoto(*file, picture, name, format, quality);
        }
        file->Complete();
        StopIfInterrupted();
        return file;
    } catch (const std::bad_alloc&) {
        throw Failure(kExitOutput, name + ": cannot be written: out of memory");
    } catch (const std::length_error&) {
        throw Failure(kExitOutput, name + ": cannot be written: out of memory");
    }
}

void SavePicture(const Picture& picture, const std::string& name, ImageFormat format, int quality) {
    PreparePicture(picture, name, format, quality)->Commit();
}
