#include "pictures/picture_rows.h"

#include <algorithm>
#include <cstring>
#include <new>

#include <qv8effect.h>

#include "pictures/codec.h"
#include "pictures/interrupt.h"

namespace {

constexpr const char* kUnknownMasks = "its channel masks are not among those that can be converted";

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

bool IsGrey(const RGBQUAD& entry) {
    return entry.rgbRed == entry.rgbGreen && entry.rgbGreen == entry.rgbBlue;
}

bool AnyFourthByte(const LockedPicture& picture) {
    for (std::size_t y = 0; y < picture.Height(); ++y) {
        const BYTE* const row = picture.RowFromTop(y);
        BYTE any = 0;
        for (std::size_t x = 0; x < picture.Width(); ++x) {
            any = static_cast<BYTE>(any | row[4 * x + 3]);
        }
        if (any != 0) {
            return true;
        }
    }
    return false;
}

unsigned DepthOf(const Picture& picture) {
    return LockedPicture(picture).Header().biBitCount;
}

} // namespace

bool HasGreyTable(const LockedPicture& picture) {
    const RGBQUAD* const table = picture.Table();
    return picture.Header().biBitCount <= 8 && std::all_of(table, table + picture.TableEntries(), IsGrey);
}

Picture As24Bit(const Picture& picture) {
    const SilentOwner owner;
    Picture converted(QV8ConvertColor(picture.Handle(), 24, FALSE, FALSE, 128, owner.Number(), 0, 0, 0));
    if (!converted) {
        StopIfInterrupted();
        const int status = GetErrorStatus();
        throw Refusal(status == QV8_STATUS_PICTURE ? kUnknownMasks : GetErrorStatusText(status));
    }
    return converted;
}

PictureRows::PictureRows(const Picture& picture, bool fourthByteIsAlpha)
    : converted_(DepthOf(picture) == 16 ? As24Bit(picture) : Picture()), locked_(converted_ ? converted_ : picture) {
    switch (locked_.Header().biBitCount) {
    case 24:
        break;
    case 32:
        Require(GetBmp32Info(locked_.Bytes()) != -1, kUnknownMasks);
        form_ = fourthByteIsAlpha || AnyFourthByte(locked_) ? Form::kColourAndAlpha : Form::kColour;
        break;
    default:
        form_ = HasGreyTable(locked_) ? Form::kGrey : Form::kColour;
        std::copy_n(locked_.Table(), std::min<std::size_t>(locked_.TableEntries(), 256), table_.begin());
    }
    row_.resize(Width() * Channels());
}

BYTE* PictureRows::Row(std::size_t y) {
    BYTE* const row = locked_.RowFromTop(y);
    const unsigned depth = locked_.Header().biBitCount;
    if (depth <= 8) {
        FromIndices(row);
    } else if (depth == 32 && form_ == Form::kColour) {
        WithoutFourthByte(row);
    } else {
        std::memcpy(row_.data(), row, row_.size()); // so that an encoder may do with it what it likes
    }
    return row_.data();
}

void PictureRows::FromIndices(const BYTE* from) {
    const unsigned depth = locked_.Header().biBitCount;
    const unsigned mask = (1U << depth) - 1;
    const std::size_t inByte = 8 / depth;
    BYTE* to = row_.data();
    for (std::size_t x = 0; x < Width(); ++x) {
        const std::size_t shift = 8 - depth - x % inByte * depth;
        const RGBQUAD& entry = table_[from[x / inByte] >> shift & mask];
        *to++ = entry.rgbBlue;
        if (form_ == Form::kColour) {
            *to++ = entry.rgbGreen;
            *to++ = entry.rgbRed;
        }
    }
}

void PictureRows::WithoutFourthByte(const BYTE* from) {
    BYTE* to = row_.data();
    for (std::size_t x = 0; x < Width(); ++x, from += 4) {
        *to++ = from[0];
        *to++ = from[1];
        *to++ = from[2];
    }
}
