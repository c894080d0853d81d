#include "chains/file_run.h"

#include <filesystem>
#include <memory>
#include <utility>

#include "pictures/failure.h"
#include "pictures/image_file.h"

namespace {

// Where the pictures of the result go, in what format.
class Destination {
public:
    Destination(const FileNames& names, const FileOptions& options) : names_(names), options_(options) {
        if (HasFormat()) {
            FormatFor(names.output);
        } else if (names.input.empty()) {
            throw Failure(kExitUsage, "--format is needed for standard output");
        }
        if (!names.maskOutput.empty()) {
            FormatFor(names.maskOutput);
        }
        if (!names.maskOutput.empty() && AreOneFile(names.maskOutput, names.output)) {
            throw Failure(kExitUsage, names.output + ": the picture and its mask need a file each");
        }
        RefuseToReplace(names.output, options.mayReplace);
    }

    // Both files are complete before the first takes its place. Where nothing says the format, it is the input's.
    void Save(const ChainResult& result, const Metadata& metadata, ImageFormat inputFormat,
              std::vector<std::string>& notes) const {
        if (!names_.maskOutput.empty() && !result.mask) {
            throw Failure(kExitUsage, names_.maskOutput + ": the result has no mask because the input has none");
        }
        WriteOptions options;
        options.quality = options_.quality.value_or(options.quality);
        options.progressive = options_.progressive;
        options.strip = options_.strip;
        options.sync = options_.sync;
        std::unique_ptr<OutputFile> mask;
        if (!names_.maskOutput.empty()) {
            options.format = FormatFor(names_.maskOutput);
            mask = PreparePicture(result.mask, {}, names_.maskOutput, options);
        }
        options.format = HasFormat() ? FormatFor(names_.output) : inputFormat;
        const std::vector<std::string> lost = WhatIsLost(result.image, metadata, options);
        notes.insert(notes.end(), lost.begin(), lost.end());
        const auto image = PreparePicture(result.image, metadata, names_.output, options);
        if (mask) {
            mask->Commit();
        }
        image->Commit();
    }

private:
    bool HasFormat() const {
        return !options_.format.empty() || names_.output != kStandardStream;
    }
    ImageFormat FormatFor(const std::string& name) const {
        return options_.format.empty() ? FormatForName(name) : FormatForWord(options_.format);
    }

    const FileNames& names_;
    const FileOptions& options_;
};

std::uint64_t PixelsOf(const Picture& picture) {
    const LockedPicture locked(picture);
    return static_cast<std::uint64_t>(locked.Width()) * locked.Height();
}

} // namespace

// Whether two names mean one file, which need not be there yet.
bool AreOneFile(const std::string& name, const std::string& other) {
    std::error_code failed;
    const auto whole = [&failed](const std::string& text) {
        return std::filesystem::weakly_canonical(std::filesystem::absolute(PathOf(text), failed), failed);
    };
    const bool sameName = whole(name) == whole(other) && !failed;
    std::error_code unknown;
    return name == other || sameName || std::filesystem::equivalent(PathOf(name), PathOf(other), unknown);
}

void RefuseToReplace(const std::string& output, bool mayReplace) {
    std::error_code unknown;
    if (!mayReplace && output != kStandardStream && std::filesystem::exists(PathOf(output), unknown)) {
        throw Failure(kExitOutput, output + ": is there already; -o " + output + " or --force replaces it");
    }
}

FileReport RunOnFile(const ReadyChain& chain, const FileNames& names, const FileOptions& options,
                     const ApplyMode& mode) {
    const Destination destination(names, options);
    LoadedPicture source;
    if (!names.input.empty()) {
        source = LoadPicture(names.input, {options.maxPixels, options.sizeKnown});
    }
    FileReport report{source.picture ? PixelsOf(source.picture) : 0, std::move(source.notes)};
    const bool hasInput = static_cast<bool>(source.picture);
    ChainResult result = chain.Apply(
        {hasInput ? &source.picture : nullptr, hasInput ? names.input : names.output, source.metadata.alpha}, mode);
    if (!result.image) { // there was nothing to do
        result.image = std::move(source.picture);
    }
    source.picture = {}; // its memory is there for the encoder
    source.metadata.alpha = result.alpha;
    report.notes.insert(report.notes.end(), result.notes.begin(), result.notes.end());
    report.pixels = hasInput ? report.pixels : PixelsOf(result.image);
    destination.Save(result, source.metadata, source.format, report.notes);
    return report;
}

void SaveAlone(Picture picture, const FileNames& names, const FileOptions& options) {
    ChainResult result;
    result.image = std::move(picture);
    std::vector<std::string> notes;
    Destination(names, options).Save(result, {}, ImageFormat::kBmp, notes);
}
