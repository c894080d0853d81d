#include "single_run.h"

#include <filesystem>
#include <memory>

#include "chain.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"

namespace {

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

// Where the pictures of the result go, in what format.
struct Destination {
    const FileOptions& files;
    ImageFormat format;
    ImageFormat maskFormat;

    explicit Destination(const FileOptions& options)
        : files(options), format(FormatForName(options.output)),
          maskFormat(options.maskOutput.empty() ? format : FormatForName(options.maskOutput)) {
        if (!options.maskOutput.empty() && AreOneFile(options.maskOutput, options.output)) {
            throw Failure(kExitUsage, options.output + ": the picture and its mask need a file each");
        }
        RefuseToReplace(options.output, options.mayReplace);
    }

    // Both files are complete before the first takes its place.
    void Save(const ChainResult& result) const {
        if (!files.maskOutput.empty() && !result.mask) {
            throw Failure(kExitUsage, files.maskOutput + ": the result has no mask because the input has none");
        }
        std::unique_ptr<OutputFile> mask;
        if (!files.maskOutput.empty()) {
            mask = PreparePicture(result.mask, files.maskOutput, maskFormat, files.quality);
        }
        const auto image = PreparePicture(result.image, files.output, format, files.quality);
        if (mask) {
            mask->Commit();
        }
        image->Commit();
    }
};

} // namespace

void RefuseToReplace(const std::string& output, bool mayReplace) {
    std::error_code unknown;
    if (!mayReplace && std::filesystem::exists(PathOf(output), unknown)) {
        throw Failure(kExitOutput, output + ": is there already; -o " + output + " or --force replaces it");
    }
}

void RunOnFile(const Chain& chain, const FileOptions& files) {
    const Destination destination(files);
    Picture source;
    if (!files.input.empty()) {
        source = LoadPicture(files.input, files.maxPixels).picture;
    }
    const ReadyChain ready(chain, files.maxPixels);
    destination.Save(ready.Apply({source.Handle(), files.input.empty() ? files.output : files.input}, false));
}
