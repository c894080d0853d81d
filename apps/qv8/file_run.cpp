#include "file_run.h"

#include <filesystem>
#include <memory>
#include <utility>

#include "pictures/failure.h"
#include "pictures/image_file.h"

namespace {

// Where the pictures of the result go, in what format.
class Destination {
public:
    Destination(const FileNames& names, const FileOptions& options)
        : names_(names), options_(options), format_(FormatFor(names.output)),
          maskFormat_(names.maskOutput.empty() ? format_ : FormatFor(names.maskOutput)) {
        if (!names.maskOutput.empty() && AreOneFile(names.maskOutput, names.output)) {
            throw Failure(kExitUsage, names.output + ": the picture and its mask need a file each");
        }
        RefuseToReplace(names.output, options.mayReplace);
    }

    // Both files are complete before the first takes its place.
    void Save(const ChainResult& result) const {
        if (!names_.maskOutput.empty() && !result.mask) {
            throw Failure(kExitUsage, names_.maskOutput + ": the result has no mask because the input has none");
        }
        std::unique_ptr<OutputFile> mask;
        if (!names_.maskOutput.empty()) {
            mask = PreparePicture(result.mask, names_.maskOutput, maskFormat_, Quality());
        }
        const auto image = PreparePicture(result.image, names_.output, format_, Quality());
        if (mask) {
            mask->Commit();
        }
        image->Commit();
    }

private:
    int Quality() const {
        return options_.quality.value_or(90);
    }
    ImageFormat FormatFor(const std::string& name) const {
        return FormatForName(options_.format.empty() ? name : "." + options_.format);
    }

    const FileNames& names_;
    const FileOptions& options_;
    ImageFormat format_;
    ImageFormat maskFormat_;
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
    if (!mayReplace && std::filesystem::exists(PathOf(output), unknown)) {
        throw Failure(kExitOutput, output + ": is there already; -o " + output + " or --force replaces it");
    }
}

void SaveResult(const ChainResult& result, const FileNames& names, const FileOptions& options) {
    Destination(names, options).Save(result);
}

FileReport RunOnFile(const ReadyChain& chain, const FileNames& names, const FileOptions& options, ApplyMode mode) {
    const Destination destination(names, options);
    Picture source;
    if (!names.input.empty()) {
        source = LoadPicture(names.input, options.maxPixels).picture;
    }
    FileReport report{source ? PixelsOf(source) : 0};
    ChainResult result = chain.Apply({source.Handle(), names.input.empty() ? names.output : names.input}, mode);
    if (!result.image) { // there was nothing to do
        result.image = std::move(source);
    }
    report.pixels = report.pixels != 0 ? report.pixels : PixelsOf(result.image);
    destination.Save(result);
    return report;
}
