#include "pictures/plain_image.h"

#include <algorithm>
#include <cstdint>
#include <new>

#include <qv8effect.h>

#include "pictures/failure.h"
#include "pictures/interrupt.h"

namespace {

bool IsGrey(const RGBQUAD& entry) {
    return entry.rgbRed == entry.rgbGreen && entry.rgbGreen == entry.rgbBlue;
}

bool HasGreyTable(const LockedPicture& picture) {
    const RGBQUAD* const table = picture.Table();
    return picture.Header().biBitCount == 8 && std::all_of(table, table + picture.TableEntries(), IsGrey);
}

bool HasAlpha(const LockedPicture& picture) {
    if (picture.Header().biBitCount != 32) {
        return false;
    }
    for (std::size_t y = 0; y < picture.Height(); ++y) {
        const BYTE* const row = picture.RowFromTop(y);
        for (std::size_t x = 0; x < picture.Width(); ++x) {
            if (row[4 * x + 3] != 0) {
                return true;
            }
        }
    }
    return false;
}

PlainImage EmptyImage(const LockedPicture& picture, std::size_t channels) {
    PlainImage image{picture.Width(), picture.Height(), channels, {}};
    image.samples.resize(image.width * image.height * channels);
    return image;
}

PlainImage PlainFromGrey(const LockedPicture& picture) {
    PlainImage image = EmptyImage(picture, 1);
    BYTE* to = image.samples.data();
    for (std::size_t y = 0; y < image.height; ++y) {
        const BYTE* const row = picture.RowFromTop(y);
        for (std::size_t x = 0; x < image.width; ++x) { // an index beyond the table reads as black
            *to++ = row[x] < picture.TableEntries() ? picture.Table()[row[x]].rgbRed : BYTE{0};
        }
    }
    return image;
}

// For pixels of three or four bytes.
PlainImage PlainFromTrueColour(const LockedPicture& picture, std::size_t channels) {
    PlainImage image = EmptyImage(picture, channels);
    const std::size_t pixelBytes = picture.Header().biBitCount / 8U;
    BYTE* to = image.samples.data();
    for (std::size_t y = 0; y < image.height; ++y) {
        const BYTE* from = picture.RowFromTop(y);
        for (std::size_t x = 0; x < image.width; ++x, from += pixelBytes, to += channels) {
            to[0] = from[2];
            to[1] = from[1];
            to[2] = from[0];
            if (channels == 4) {
                to[3] = from[3];
            }
        }
    }
    return image;
}

Failure UnknownChannels(ExitCode code, const std::string& subject) {
    return Failure(code, subject + "its channel masks are not among those that can be converted");
}

// What the library reports to: nothing is shown, and an interrupt stops it.
class SilentOwner {
public:
    SilentOwner() {
        if (number_ == 0) { // 0 would make the library open a dialog of its own
            throw std::bad_alloc();
        }
    }
    SilentOwner(const SilentOwner&) = delete;
    SilentOwner& operator=(const SilentOwner&) = delete;
    ~SilentOwner() {
        RemoveProgressOwner(number_);
    }
    DWORD Number() const {
        return number_;
    }

private:
    QV8_REALIGN static int QV8API OnProgress(int, void*) {
        return Interrupted() ? 0 : 1;
    }
    DWORD number_ = AddProgressOwner(OnProgress, this);
};

Picture As24Bit(const Picture& picture, ExitCode code, const std::string& subject) {
    const SilentOwner owner;
    Picture converted(QV8ConvertColor(picture.Handle(), 24, FALSE, FALSE, 128, owner.Number(), 0, 0, 0));
    if (!converted) {
        StopIfInterrupted();
        const int status = GetErrorStatus();
        throw status == QV8_STATUS_PICTURE ? UnknownChannels(code, subject)
                                           : Failure(code, subject + GetErrorStatusText(status));
    }
    return converted;
}

unsigned DepthFor(std::size_t channels) {
    return channels == 1 ? 8 : channels == 3 ? 24 : 32;
}

BITMAPINFOHEADER HeaderFor(std::size_t width, std::size_t height, unsigned depth) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = static_cast<LONG>(width);
    header.biHeight = static_cast<LONG>(height);
    header.biPlanes = 1;
    header.biBitCount = static_cast<WORD>(depth);
    header.biCompression = BI_RGB;
    header.biSizeImage = static_cast<DWORD>(RowBytes(depth, width) * height);
    return header;
}

void FillGreyRamp(BYTE* table) {
    for (unsigned level = 0; level < 256; ++level) {
        const auto value = static_cast<BYTE>(level);
        const RGBQUAD entry{value, value, value, 0};
        reinterpret_cast<RGBQUAD*>(table)[level] = entry;
    }
}

void FillRow(BYTE* to, const BYTE* from, std::size_t width, std::size_t channels) {
    if (channels == 1) {
        std::copy_n(from, width, to);
        return;
    }
    const std::size_t pixelBytes = DepthFor(channels) / 8;
    const std::size_t green = channels > 2 ? 1 : 0;
    for (std::size_t x = 0; x < width; ++x, from += channels, to += pixelBytes) {
        to[0] = from[2 * green];
        to[1] = from[green];
        to[2] = from[0];
        if (pixelBytes == 4) {
            to[3] = from[channels - 1];
        }
    }
}

} // namespace

PlainImage PlainFromPicture(const Picture& picture, ExitCode code, const std::string& subject) {
    {
        const LockedPicture locked(picture);
        if (HasGreyTable(locked)) {
            return PlainFromGrey(locked);
        }
        if (locked.Header().biBitCount == 32 && GetBmp32Info(locked.Bytes()) == -1) {
            throw UnknownChannels(code, subject);
        }
        if (locked.Header().biBitCount >= 24) {
            return PlainFromTrueColour(locked, HasAlpha(locked) ? 4 : 3);
        }
    }
    const Picture converted = As24Bit(picture, code, subject);
    return PlainFromTrueColour(LockedPicture(converted), 3);
}

Picture PictureFromSamples(const BYTE* samples, std::size_t width, std::size_t height, std::size_t channels) {
    const std::uint64_t tableBytes = channels == 1 ? 256 * sizeof(RGBQUAD) : 0;
    const std::uint64_t size = sizeof(BITMAPINFOHEADER) + tableBytes + RowBytes(DepthFor(channels), width) * height;
    if (size > 0x7FFFFFFF) {
        return {};
    }
    Picture picture(GlobalAlloc(GHND, static_cast<SIZE_T>(size)));
    if (!picture) {
        return {};
    }
    const LockedPicture locked(picture);
    locked.Header() = HeaderFor(width, height, DepthFor(channels));
    if (channels == 1) {
        FillGreyRamp(locked.Bytes() + sizeof(BITMAPINFOHEADER));
    }
    for (std::size_t y = 0; y < height; ++y) {
        FillRow(locked.RowFromTop(y), samples + y * width * channels, width, channels);
    }
    return picture;
}
