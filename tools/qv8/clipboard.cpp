#include "clipboard.h"

#include <vector>

#include <qv8effect.h>

#include "pictures/bmp.h"
#include "pictures/failure.h"
#include "pictures/plain_image.h"
#include "progress.h"

namespace {

// The same picture without channel masks, which the clipboard is not given.
Picture WithoutMasks(const Picture& picture, const std::string& name) {
    const PlainImage image = PlainFromPicture(picture, kExitInput, name + ": ");
    Picture plain = PictureFromSamples(image.samples.data(), image.width, image.height, image.channels);
    if (!plain) {
        throw StatusFailure(name + ": copy: ", QV8_STATUS_MEMORY);
    }
    return plain;
}

} // namespace

void CopyToClipboard(const Picture& picture, const std::string& name) {
    Picture plain;
    if (LockedPicture(picture).Header().biCompression == BI_BITFIELDS) {
        plain = WithoutMasks(picture, name);
    }
    const Progress progress(Progress::Bar::kWhenTerminal);
    if (QV8SetToClipBrd(nullptr, (plain ? plain : picture).Handle(), progress.Owner(), 0, 0, 0) == 0) {
        throw StatusFailure(name + ": copy: ", GetErrorStatus());
    }
}

Picture PictureFromClipboard(std::uint64_t maxPixels) {
    const Progress progress(Progress::Bar::kWhenTerminal);
    const Picture taken(QV8GetFromClipBrd(nullptr, progress.Owner(), 0, 0, 0));
    if (!taken) {
        if (GetErrorStatus() == QV8_STATUS_PICTURE) {
            throw Failure(kExitInput, "paste: the clipboard holds no picture that can be read");
        }
        throw StatusFailure("paste: ", GetErrorStatus());
    }
    // What lies on the clipboard is a file without its first header, and may have as many forms.
    std::vector<BYTE> file(kBmpFileHeaderBytes);
    file[0] = 'B';
    file[1] = 'M';
    const LockedPicture locked(taken);
    file.insert(file.end(), locked.Bytes(), locked.Bytes() + GlobalSize(taken.Handle()));
    BmpReading reading = ReadBmp(file.data(), file.size(), maxPixels);
    if (!reading.picture) {
        throw Failure(kExitInput, "paste: the picture on the clipboard cannot be read: " + reading.error);
    }
    return std::move(reading.picture);
}
