#include "chains/clipboard.h"

#include <new>
#include <vector>

#include "catalogue/run.h"
#include "pictures/bmp.h"
#include "pictures/failure.h"
#include "pictures/image_file.h"
#include "pictures/plain_image.h"

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

Picture RunClipboard(const char* effect, catalogue::Request request, const Report& report, const std::string& subject,
                     ExitCode code) {
    const Progress progress(report);
    request.progressOwner = progress.Owner();
    const catalogue::Outcome outcome = catalogue::Run(*catalogue::FindEffect(effect), request);
    if (outcome.failed != catalogue::Failed::kNot) {
        throw Failure(outcome.status == QV8_STATUS_CANCELLED ? kExitCancelled : code, subject + outcome.words);
    }
    return Picture(outcome.result.pictures.hImage);
}

} // namespace

void CopyToClipboard(const Picture& picture, const std::string& name, const Report& report, HWND window) {
    Picture plain;
    if (LockedPicture(picture).Header().biCompression == BI_BITFIELDS) {
        plain = WithoutMasks(picture, name);
    }
    catalogue::Request request;
    request.image = (plain ? plain : picture).Handle();
    request.window = window;
    RunClipboard("set-to-clip-brd", request, report, name + ": copy: ", kExitEffectFailed);
}

Picture PictureFromClipboard(std::uint64_t maxPixels, const Report& report, HWND window) {
    catalogue::Request request;
    request.window = window;
    const Picture taken = RunClipboard("get-from-clip-brd", request, report, "paste: ", kExitInput);
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
