#include "clipboard.h"

#include <new>
#include <vector>

#include "catalogue/run.h"
#include "pictures/bmp.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"
#include "pictures/plain_image.h"
#include "progress_bar.h"

namespace {

// The same picture without channel masks, which the clipboard is not given.
Picture WithoutMasks(const Picture& picture, const std::string& name) {
    const PlainImage image = PlainFromPicture(picture, kExitInput, name + ": ");
    Picture plain = PictureFromSamples(image.samples.data(), image.width, image.height, image.channels);
    if (!plain) {
        throw std::bad_alloc();
    }
    return plain;
}

Picture RunClipboard(const char* effect, HGLOBAL image, const std::string& subject, ExitCode code) {
    ProgressBar bar(ProgressBar::Shown::kOnTerminal);
    const Progress progress(bar.AsReport());
    catalogue::Request request;
    request.image = image;
    request.progressOwner = progress.Owner();
    const catalogue::Outcome outcome = catalogue::Run(*catalogue::FindEffect(effect), request);
    if (outcome.failed != catalogue::Failed::kNot) {
        throw Failure(outcome.status == QV8_STATUS_CANCELLED ? kExitCancelled : code, subject + outcome.words);
    }
    return Picture(outcome.result.pictures.hImage);
}

} // namespace

void CopyToClipboard(const Picture& picture, const std::string& name) {
    Picture plain;
    if (LockedPicture(picture).Header().biCompression == BI_BITFIELDS) {
        plain = WithoutMasks(picture, name);
    }
    RunClipboard("set-to-clip-brd", (plain ? plain : picture).Handle(), name + ": copy: ", kExitEffectFailed);
}

Picture PictureFromClipboard(std::uint64_t maxPixels) {
    const Picture taken = RunClipboard("get-from-clip-brd", nullptr, "paste: ", kExitInput);
    // What lies on the clipboard is a file without its first header, and may have as many forms.
    std::vector<BYTE> file(kBmpFileHeaderBytes);
    file[0] = 'B';
    file[1] = 'M';
    const LockedPicture locked(taken);
    file.insert(file.end(), locked.Bytes(), locked.Bytes() + GlobalSize(taken.Handle()));
    ReadOptions options;
    options.maxPixels = maxPixels;
    return DecodePicture(file, "paste: the picture on the clipboard", options).picture;
}
