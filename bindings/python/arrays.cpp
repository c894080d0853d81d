#include "arrays.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include "catalogue/picture_header.h"
#include "chains/alpha.h"
#include "pictures/channel_order.h"
#include "pictures/codec.h"
#include "pictures/failure.h"
#include "pictures/picture_rows.h"

namespace {

ArrayView ViewOf(const py::array& array, const char* name, bool hasChannels) {
    const std::string subject = std::string(name) + ": ";
    ArrayView view;
    const auto dimensions = static_cast<std::size_t>(array.ndim());
    if (dimensions == 3 && hasChannels) {
        view.channels = static_cast<std::size_t>(array.shape(2));
    }
    const bool fits = dimensions == 2 || (dimensions == 3 && (view.channels == 3 || view.channels == 4));
    if (!fits || array.size() == 0) {
        throw py::value_error(subject + (hasChannels ? "an array of H x W, H x W x 3 or H x W x 4 with pixels is needed"
                                                     : "an array of H x W is needed"));
    }
    if (array.shape(0) > 0x7FFFFFFF || array.shape(1) > 0x7FFFFFFF) {
        throw py::value_error(subject + "the array is too large");
    }
    view.first = static_cast<const BYTE*>(array.data());
    view.height = static_cast<std::size_t>(array.shape(0));
    view.width = static_cast<std::size_t>(array.shape(1));
    for (std::size_t i = 0; i != dimensions; ++i) {
        view.steps.at(i) = array.strides(static_cast<py::ssize_t>(i));
    }
    return view;
}

void RequireType(const py::array& array, const char* name, char kind, const char* type) {
    if (array.dtype().kind() != kind || array.itemsize() != 1) {
        throw py::type_error(std::string(name) + ": an array of " + type + " is needed, not of " +
                             py::str(array.dtype()).cast<std::string>());
    }
}

const BYTE* RowOf(const ArrayView& view, std::size_t y) {
    return view.first + static_cast<std::ptrdiff_t>(y) * view.steps[0];
}

// A row as the picture has it: blue first.
void CopyRow(const ArrayView& view, const BYTE* from, BYTE* to) {
    const std::size_t channels = view.channels;
    const auto whole = static_cast<std::ptrdiff_t>(channels);
    const bool isDense = view.steps[1] == whole;
    if (isDense && channels == 1) {
        std::memcpy(to, from, view.width);
    } else if (isDense && view.steps[2] == 1) {
        SwapRedAndBlue(from, to, view.width, channels);
    } else if (isDense && view.steps[2] == -1 && channels == 3) { // blue first already
        std::memcpy(to, from - 2, 3 * view.width);
    } else {
        const std::array<std::ptrdiff_t, 4> order{channels == 1 ? 0 : 2, 1, 0, 3};
        for (std::size_t x = 0; x < view.width; ++x, from += view.steps[1]) {
            for (std::size_t c = 0; c < channels; ++c) {
                *to++ = from[order[c] * view.steps[2]];
            }
        }
    }
}

// Eight pixels of a mask, a byte of 0 or 1 each, as bits, the first one highest.
BYTE PackedBits(const BYTE* pixels) {
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t bytes = 0;
    std::memcpy(&bytes, pixels, sizeof bytes);
    return static_cast<BYTE>(bytes * 0x8040201008040201U >> 56U);
}

void PackRow(const ArrayView& view, const BYTE* from, BYTE* to, std::size_t invert) {
    std::array<BYTE, 8> pixels{};
    for (std::size_t x = 0; x < view.width; x += 8) {
        const std::size_t count = std::min<std::size_t>(8, view.width - x);
        if (count == 8 && view.steps[1] == 1) {
            std::memcpy(pixels.data(), from + x, 8);
        } else {
            pixels.fill(0);
            for (std::size_t i = 0; i < count; ++i) {
                pixels[i] = from[static_cast<std::ptrdiff_t>(x + i) * view.steps[1]] != 0;
            }
        }
        to[x / 8] = static_cast<BYTE>(PackedBits(pixels.data()) ^ invert);
    }
}

using Levels = std::array<BYTE, 256>;

// The grey levels that the indices of an 8-bit picture stand for; black where its table has none.
Levels LevelsOf(const LockedPicture& picture) {
    Levels levels{};
    for (std::size_t i = 0; i < std::min<std::size_t>(picture.TableEntries(), levels.size()); ++i) {
        levels[i] = picture.Table()[i].rgbRed;
    }
    return levels;
}

bool AreIndices(const Levels& levels) {
    std::size_t i = 0;
    return std::all_of(levels.begin(), levels.end(), [&i](BYTE level) { return level == i++; });
}

// Rows of a picture, blue first or indices, as rows of an array.
class RowReader {
public:
    RowReader(const LockedPicture& picture, std::size_t channels) : width_(picture.Width()), channels_(channels) {
        if (channels == 1) {
            levels_ = LevelsOf(picture);
            keepsIndices_ = AreIndices(levels_);
        }
    }

    void Copy(const BYTE* from, BYTE* to) const {
        if (channels_ != 1) {
            SwapRedAndBlue(from, to, width_, channels_);
        } else if (keepsIndices_) {
            std::memcpy(to, from, width_);
        } else {
            std::transform(from, from + width_, to, [this](BYTE index) { return levels_[index]; });
        }
    }

private:
    std::size_t width_;
    std::size_t channels_;
    Levels levels_{};
    bool keepsIndices_ = false;
};

// Turns the rows of a picture, which are bottom-up, into those of an array where they are.
void TurnRows(const LockedPicture& picture, std::size_t channels) {
    const RowReader reader(picture, channels);
    const std::size_t height = picture.Height();
    std::vector<BYTE> kept(picture.Width() * channels);
    for (std::size_t y = 0; y < height / 2; ++y) {
        BYTE* const upper = picture.RowFromTop(height - 1 - y);
        BYTE* const lower = picture.RowFromTop(y);
        reader.Copy(upper, kept.data());
        reader.Copy(lower, upper);
        std::memcpy(lower, kept.data(), kept.size());
    }
    if (height % 2 == 1) {
        BYTE* const middle = picture.RowFromTop(height / 2);
        reader.Copy(middle, kept.data());
        std::memcpy(middle, kept.data(), kept.size());
    }
}

Picture PlainPicture(std::size_t width, std::size_t height, std::size_t channels) {
    return channels == 1 ? NewPicture(width, height, 8, GreyRamp(8))
                         : NewPicture(width, height, static_cast<unsigned>(8 * channels));
}

} // namespace

ArrayView ViewOfPicture(const py::array& array, const char* name) {
    RequireType(array, name, 'u', "uint8");
    return ViewOf(array, name, true);
}

ArrayView ViewOfMask(const py::array& array, const char* name) {
    RequireType(array, name, 'b', "bool");
    return ViewOf(array, name, false);
}

Picture PictureFromView(const ArrayView& view) {
    Picture picture = PlainPicture(view.width, view.height, view.channels);
    const LockedPicture locked(picture);
    for (std::size_t y = 0; y < view.height; ++y) {
        CopyRow(view, RowOf(view, y), locked.RowFromTop(y));
    }
    return picture;
}

ArrayView RowsOf(const ArrayView& view, std::size_t y, std::size_t count) {
    ArrayView rows = view;
    rows.first = RowOf(view, y);
    rows.height = std::min(count, view.height - y);
    return rows;
}

Picture MaskFromView(const ArrayView& view, bool inverted) {
    Picture mask = NewPicture(view.width, view.height, 1, GreyRamp(1));
    const LockedPicture locked(mask);
    for (std::size_t y = 0; y < view.height; ++y) {
        PackRow(view, RowOf(view, y), locked.RowFromTop(y), inverted ? 0xFF : 0);
    }
    return mask;
}

Picture CopyOf(const Picture& picture) {
    Picture copy(GlobalAlloc(GMEM_MOVEABLE, GlobalSize(picture.Handle())));
    if (!copy) {
        throw std::bad_alloc();
    }
    std::memcpy(LockedPicture(copy).Bytes(), LockedPicture(picture).Bytes(), GlobalSize(picture.Handle()));
    return copy;
}

ArrayPixels::ArrayPixels(Picture picture, bool alpha) {
    std::size_t channels = 0;
    {
        const LockedPicture locked(picture);
        const WORD depth = locked.Header().biBitCount;
        channels = depth == 8 && HasGreyTable(locked) ? 1 : depth == 24 ? 3 : 0;
        if (depth == 32 && catalogue::HasKnownLayout(picture.Handle()) && (alpha || HasAlpha(picture))) {
            channels = 4;
        }
    }
    if (channels != 0) {
        TakeOver(std::move(picture), channels);
    } else {
        Convert(picture, alpha);
    }
}

ArrayPixels::ArrayPixels(Picture mask) : type_("?") {
    const LockedPicture locked(mask);
    block_ = NewPicture(locked.Width(), locked.Height(), 8, GreyRamp(8));
    const LockedPicture bytes(block_);
    for (std::size_t y = 0; y < locked.Height(); ++y) {
        const BYTE* const from = locked.RowFromTop(y);
        BYTE* const to = bytes.Bytes() + bytes.PixelOffset() + y * bytes.Stride();
        for (std::size_t x = 0; x < locked.Width(); ++x) {
            to[x] = static_cast<BYTE>(from[x / 8] >> (7 - x % 8) & 1U);
        }
    }
    shape_ = {locked.Height(), locked.Width()};
    rowStep_ = bytes.Stride();
    first_ = static_cast<BYTE*>(GlobalLock(block_.Handle())) + bytes.PixelOffset();
}

ArrayPixels::~ArrayPixels() {
    if (block_) {
        GlobalUnlock(block_.Handle());
    }
}

ArrayPixels::ArrayPixels(std::size_t height, std::size_t width, std::size_t channels) {
    Shape(PlainPicture(width, height, channels), channels);
}

void ArrayPixels::Put(std::size_t y, const Picture& rows) {
    const LockedPicture locked(rows);
    const RowReader reader(locked, shape_.size() == 3 ? shape_[2] : 1);
    for (std::size_t i = 0; i != locked.Height(); ++i) {
        reader.Copy(locked.RowFromTop(i), first_ + (y + i) * rowStep_);
    }
}

void ArrayPixels::TakeOver(Picture picture, std::size_t channels) {
    Shape(std::move(picture), channels);
    TurnRows(LockedPicture(block_), channels);
}

// The rows stay where they are: an array may have padding behind them.
void ArrayPixels::Shape(Picture block, std::size_t channels) {
    block_ = std::move(block);
    const LockedPicture locked(block_);
    shape_ = {locked.Height(), locked.Width()};
    if (channels != 1) {
        shape_.push_back(channels);
    }
    rowStep_ = locked.Stride();
    first_ = static_cast<BYTE*>(GlobalLock(block_.Handle())) + locked.PixelOffset();
}

void ArrayPixels::Convert(const Picture& picture, bool alpha) {
    try {
        PictureRows rows(picture, alpha);
        const std::size_t channels = rows.Channels();
        Picture plain = PlainPicture(rows.Width(), rows.Height(), channels);
        {
            const LockedPicture locked(plain);
            for (std::size_t y = 0; y < rows.Height(); ++y) {
                std::memcpy(locked.RowFromTop(y), rows.Row(y), rows.Width() * channels);
            }
        }
        TakeOver(std::move(plain), channels);
    } catch (const Refusal& refusal) {
        throw Failure(kExitUsage, refusal.what());
    }
}

py::array ArrayPixels::Release() {
    std::vector<std::size_t> steps{rowStep_, shape_.size() == 3 ? shape_[2] : 1};
    if (shape_.size() == 3) {
        steps.push_back(1);
    }
    const auto free = [](void* kept) {
        auto* const block = static_cast<Picture*>(kept);
        GlobalUnlock(block->Handle());
        delete block;
    };
    const py::capsule owner(new Picture(std::move(block_)), free);
    return py::array(py::dtype(type_), shape_, steps, first_, owner);
}
