// EXIF blocks: directories of entries of 12 bytes, in either byte order, as in TIFF. Nothing in them is believed.
#include <algorithm>
#include <array>
#include <cstring>

#include "pictures/metadata.h"

namespace {

enum Tag : unsigned { kOrientation = 0x0112, kSmallPicture = 0x0201, kSmallPictureBytes = 0x0202 };

constexpr std::size_t kEntryBytes = 12;

template <class Byte>
class Directories {
public:
    explicit Directories(std::span<Byte> exif)
        : exif_(exif), bigEndian_(exif.size() >= 8 && exif[0] == 'M'),
          valid_(exif.size() >= 8 && (exif[0] == 'M' || exif[0] == 'I') && exif[0] == exif[1] && Number(2, 2) == 42) {}

    // Where the first directory, or the one behind the directory at `at`, begins; 0 when there is none.
    std::size_t First() const {
        return valid_ ? Checked(Number(4, 4)) : 0;
    }
    std::size_t LinkBehind(std::size_t at) const {
        return at + 2 + Number(at, 2) * kEntryBytes;
    }
    std::size_t Behind(std::size_t at) const {
        const std::size_t link = LinkBehind(at);
        return link + 4 <= exif_.size() ? Checked(Number(link, 4)) : 0;
    }

    // Where the value of a tag lies; 0 when the directory at `at` does not have it.
    std::size_t Value(std::size_t at, unsigned tag) const {
        const std::size_t count = Number(at, 2);
        for (std::size_t i = 0, entry = at + 2; i < count && entry + kEntryBytes <= exif_.size();
             ++i, entry += kEntryBytes) {
            if (Number(entry, 2) == tag) {
                return entry + 8;
            }
        }
        return 0;
    }

    std::size_t Number(std::size_t at, std::size_t bytes) const {
        std::size_t value = 0;
        for (std::size_t i = 0; i < bytes; ++i) {
            value = value << 8 | exif_[at + (bigEndian_ ? i : bytes - 1 - i)];
        }
        return value;
    }
    void Put(std::size_t at, std::size_t bytes, unsigned value) const {
        for (std::size_t i = 0; i < bytes; ++i) {
            exif_[at + (bigEndian_ ? bytes - 1 - i : i)] = static_cast<BYTE>(value >> (8 * i));
        }
    }

private:
    std::size_t Checked(std::size_t at) const {
        return at >= 8 && at < exif_.size() && exif_.size() - at >= 2 ? at : 0;
    }

    std::span<Byte> exif_;
    bool bigEndian_;
    bool valid_;
};

bool HasSpace(std::span<const BYTE> profile, const char* space) {
    constexpr std::size_t kHeaderBytes = 128;
    return profile.size() >= kHeaderBytes && std::memcmp(profile.data() + 16, space, 4) == 0;
}

} // namespace

unsigned ExifOrientation(std::span<const BYTE> exif) {
    const Directories directories(exif);
    const std::size_t first = directories.First();
    const std::size_t value = first != 0 ? directories.Value(first, kOrientation) : 0;
    const std::size_t orientation = value != 0 ? directories.Number(value, 2) : 1;
    return orientation >= 1 && orientation <= 8 ? static_cast<unsigned>(orientation) : 1;
}

void RefreshExif(std::span<BYTE> exif) {
    const Directories directories(exif);
    const std::size_t first = directories.First();
    if (first == 0) {
        return;
    }
    if (const std::size_t value = directories.Value(first, kOrientation); value != 0) {
        directories.Put(value, 2, 1);
    }
    const std::size_t second = directories.Behind(first);
    if (second == 0) {
        return;
    }
    const std::size_t place = directories.Value(second, kSmallPicture);
    const std::size_t size = directories.Value(second, kSmallPictureBytes);
    if (place != 0 && size != 0) {
        const std::size_t from = std::min(directories.Number(place, 4), exif.size());
        const std::size_t bytes = std::min(directories.Number(size, 4), exif.size() - from);
        std::fill_n(exif.begin() + static_cast<std::ptrdiff_t>(from), bytes, BYTE{0});
    }
    directories.Put(directories.LinkBehind(first), 4, 0);
}

bool HasExifPrefix(std::span<const BYTE> bytes) {
    return bytes.size() > kExifPrefix.size() && std::equal(kExifPrefix.begin(), kExifPrefix.end(), bytes.begin());
}

bool IsGreyProfile(std::span<const BYTE> profile) {
    return HasSpace(profile, "GRAY");
}

bool IsColourProfile(std::span<const BYTE> profile) {
    return HasSpace(profile, "RGB ");
}
