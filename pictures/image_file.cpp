#include "pictures/image_file.h"

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>

#include "pictures/codec.h"
#include "pictures/failure.h"
#include "pictures/input_file.h"
#include "pictures/interrupt.h"
#include "pictures/metadata.h"
#include "pictures/picture_rows.h"

namespace {

constexpr std::size_t kLargestFile = 0x7FFFFFFF;

constexpr std::array kCodecs{&kBmpCodec, &kPngCodec, &kJpegCodec, &kTiffCodec, &kWebpCodec};

const Codec& CodecOf(ImageFormat format) {
    return **std::find_if(kCodecs.begin(), kCodecs.end(),
                          [format](const Codec* codec) { return codec->format == format; });
}

// Null when the bytes begin like no known format.
const Codec* CodecFor(ByteView file) {
    const auto* const found =
        std::find_if(kCodecs.begin(), kCodecs.end(), [file](const Codec* codec) { return codec->recognizes(file); });
    return found != kCodecs.end() ? *found : nullptr;
}

// Null when no format has this ending. Endings are ASCII.
const Codec* CodecForEnding(std::string ending) {
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    for (const Codec* const codec : kCodecs) {
        if (std::find(codec->endings.begin(), codec->endings.end(), ending) != codec->endings.end()) {
            return codec;
        }
    }
    return nullptr;
}

// "BMP, PNG or JPEG".
std::string KnownFormats() {
    std::string names;
    for (const Codec* const codec : kCodecs) {
        names += codec == kCodecs.front() ? "" : codec == kCodecs.back() ? " or " : ", ";
        names += codec->name;
    }
    return names;
}

void CheckStart(const std::string& name, ByteView start) {
    if (CodecFor(start) == nullptr) {
        throw ReadFailure(name, start.empty() ? "it is empty" : "it is not a " + KnownFormats() + " file");
    }
}

// Calls `work` and gives what goes wrong in it the form for the user.
template <class Work>
auto Reported(ExitCode code, const std::string& subject, Work work) {
    try {
        return work();
    } catch (const Refusal& refusal) {
        throw Failure(code, subject + refusal.what());
    } catch (const std::bad_alloc&) {
        throw Failure(code, subject + "out of memory");
    } catch (const std::length_error&) { // more than the system has addresses for
        throw Failure(code, subject + "out of memory");
    }
}

void Encode(const Picture& picture, const Metadata& metadata, const WriteOptions& options, const std::string& name,
            const Sink& sink) {
    Reported(kExitOutput, name + ": cannot be written: ", [&] {
        Metadata kept;
        kept.alpha = metadata.alpha;
        CodecOf(options.format).write(picture, options.strip ? kept : metadata, options, sink);
    });
}

bool IsGrey(const LockedPicture& picture) {
    return picture.Header().biBitCount <= 8 && HasGreyTable(picture);
}

} // namespace

const char* FormatName(ImageFormat format) {
    return CodecOf(format).name;
}

std::string KnownEndings() {
    std::string endings;
    for (const Codec* const codec : kCodecs) {
        for (const char* const ending : codec->endings) {
            endings += (endings.empty() ? "." : ", .") + std::string(ending);
        }
    }
    return endings;
}

ImageFormat FormatForName(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    const Codec* const codec = dot != std::string::npos ? CodecForEnding(name.substr(dot + 1)) : nullptr;
    if (codec == nullptr) {
        throw Failure(kExitUsage, name + ": the name of the output must end in one of " + KnownEndings());
    }
    return codec->format;
}

ImageFormat FormatForWord(const std::string& word) {
    const Codec* const codec = CodecForEnding(word);
    if (codec == nullptr) {
        throw Failure(kExitUsage, word + ": the formats are " + KnownFormats());
    }
    return codec->format;
}

std::string CodecVersions() {
    std::string lines;
    for (const Codec* const codec : kCodecs) {
        lines += std::string(codec->name) + ": " + codec->library() + "\n";
    }
    return lines;
}

LoadedPicture DecodePicture(std::span<const BYTE> bytes, const std::string& name, const ReadOptions& options) {
    CheckStart(name, bytes);
    LoadedPicture loaded =
        Reported(kExitInput, name + ": cannot be read: ", [&] { return CodecFor(bytes)->read(bytes, options); });
    StopIfInterrupted();
    return loaded;
}

LoadedPicture LoadPicture(const std::string& name, const ReadOptions& options) {
    return Reported(kExitInput, name + ": cannot be read: ", [&] {
        const auto bytes =
            ReadWholeFile(name, kLargestFile, [&name](const std::vector<BYTE>& start) { CheckStart(name, start); });
        return DecodePicture(bytes, name, options);
    });
}

LoadedPicture LoadPicture(const std::string& name, std::uint64_t maxPixels) {
    ReadOptions options;
    options.maxPixels = maxPixels;
    return LoadPicture(name, options);
}

std::vector<std::string> WhatIsLost(const Picture& picture, const Metadata& metadata, const WriteOptions& options) {
    const Codec& codec = CodecOf(options.format);
    const std::string inFormat = std::string(codec.name) + " files";
    std::vector<std::string> lost;
    const auto note = [&](bool has, Holds what, const char* words) {
        if (has && (codec.holds & what) == 0) {
            lost.push_back(std::string("the ") + words + " has no place in " + inFormat);
        }
    };
    const LockedPicture locked(picture);
    const bool alpha = locked.Header().biBitCount == 32 && PictureRows(picture, metadata.alpha).Channels() == 4;
    note(alpha, kHoldsAlpha, "transparency");
    if (options.strip) {
        return lost;
    }
    note(!metadata.profile.empty(), kHoldsProfile, "colour profile");
    note(!metadata.exif.empty(), kHoldsExif, "EXIF data");
    note(metadata.xPixelsPerMetre != 0, kHoldsResolution, "resolution");
    const bool fits = IsGrey(locked) ? IsGreyProfile(metadata.profile) : IsColourProfile(metadata.profile);
    if (!metadata.profile.empty() && (codec.holds & kHoldsProfile) != 0 && !fits) {
        lost.emplace_back("the colour profile is not for colours of this kind");
    }
    return lost;
}

std::vector<BYTE> EncodePicture(const Picture& picture, const Metadata& metadata, const WriteOptions& options,
                                const std::string& name) {
    std::vector<BYTE> bytes;
    Encode(picture, metadata, options, name, [&bytes](const void* from, std::size_t size) {
        bytes.insert(bytes.end(), static_cast<const BYTE*>(from), static_cast<const BYTE*>(from) + size);
    });
    return bytes;
}

std::unique_ptr<OutputFile> PreparePicture(const Picture& picture, const Metadata& metadata, const std::string& name,
                                           const WriteOptions& options) {
    auto file = std::make_unique<OutputFile>(name, options.sync ? OutputFile::Sync::kYes : OutputFile::Sync::kNo);
    Encode(picture, metadata, options, name,
           [&file](const void* bytes, std::size_t size) { file->Write(bytes, size); });
    file->Complete();
    StopIfInterrupted();
    return file;
}

std::unique_ptr<OutputFile> PreparePicture(const Picture& picture, const std::string& name, ImageFormat format,
                                           int quality) {
    WriteOptions options;
    options.format = format;
    options.quality = quality;
    return PreparePicture(picture, {}, name, options);
}

void SavePicture(const Picture& picture, const std::string& name, ImageFormat format, int quality) {
    PreparePicture(picture, name, format, quality)->Commit();
}
