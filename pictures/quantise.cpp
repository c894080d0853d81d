#include "pictures/quantise.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <string>

#include "pictures/codec.h"
#include "pictures/colour_table.h"
#include "pictures/failure.h"
#include "pictures/interrupt.h"
#include "pictures/picture_rows.h"

#ifdef QV8_HAS_LEPTONICA
#include <leptonica/allheaders.h>

namespace {

struct DestroyPix {
    void operator()(PIX* pix) const {
        pixDestroy(&pix);
    }
};
using OwnedPix = std::unique_ptr<PIX, DestroyPix>;

OwnedPix Owned(PIX* pix) {
    if (pix == nullptr) { // it says why on standard error only, and that is memory here
        throw std::bad_alloc();
    }
    return OwnedPix(pix);
}

// Large pictures with some pixels left out: enough to begin with.
OwnedPix SampleOf(PictureRows& rows) {
    constexpr double kEnough = 1 << 20;
    const double pixels = static_cast<double>(rows.Width()) * static_cast<double>(rows.Height());
    const auto step = static_cast<std::size_t>(std::max(1.0, std::sqrt(pixels / kEnough)));
    const auto side = [step](std::size_t pixelsOfSide) {
        return static_cast<l_int32>((pixelsOfSide + step - 1) / step);
    };
    OwnedPix pix = Owned(pixCreate(side(rows.Width()), side(rows.Height()), 32));
    l_uint32* to = pixGetData(pix.get());
    std::vector<Levels> row;
    for (std::size_t y = 0; y < rows.Height(); y += step) {
        ReadColours(rows, y, row);
        for (std::size_t x = 0; x < row.size(); x += step) {
            composeRGBPixel(row[x][2], row[x][1], row[x][0], to++);
        }
    }
    return pix;
}

std::vector<RGBQUAD> TableOf(PIXCMAP* map) {
    std::vector<RGBQUAD> table;
    for (l_int32 i = 0; i < pixcmapGetCount(map); ++i) {
        l_int32 red = 0;
        l_int32 green = 0;
        l_int32 blue = 0;
        pixcmapGetColor(map, i, &red, &green, &blue);
        table.push_back({static_cast<BYTE>(blue), static_cast<BYTE>(green), static_cast<BYTE>(red), 0});
    }
    return table;
}

std::vector<RGBQUAD> FirstTable(PictureRows& rows, unsigned colours) {
    constexpr l_int32 kBitsOfChannel = 5; // of its histogram
    constexpr l_int32 kEveryPixel = 1;
    constexpr l_int32 kIndicesOf8Bits = 8;
    [[maybe_unused]] static const l_int32 before = setMsgSeverity(L_SEVERITY_NONE);
    const OwnedPix sample = SampleOf(rows);
    const OwnedPix reduced = Owned(pixMedianCutQuantGeneral(
        sample.get(), 0, kIndicesOf8Bits, static_cast<l_int32>(colours), kBitsOfChannel, kEveryPixel, 0));
    std::vector<RGBQUAD> table = TableOf(pixGetColormap(reduced.get()));
    table.resize(std::min<std::size_t>(table.size(), colours)); // it may choose a colour more than it was asked for
    return table;
}

// What the pixels of a row are off, in sixteenths, passed on to the right and to the row below (Floyd and Steinberg).
class Dithering {
public:
    explicit Dithering(std::size_t width) : here_(width + 2), below_(width + 2) {}

    void BeginRow() {
        here_.swap(below_);
        std::fill(below_.begin(), below_.end(), Levels{});
    }
    Levels Wanted(const Levels& colour, std::size_t x) const {
        Levels wanted{};
        for (std::size_t c = 0; c < wanted.size(); ++c) {
            wanted[c] = std::clamp(colour[c] + here_[x + 1][c] / 16, 0, 255);
        }
        return wanted;
    }
    void PassOn(const Levels& wanted, const RGBQUAD& entry, std::size_t x) {
        const Levels taken{entry.rgbBlue, entry.rgbGreen, entry.rgbRed};
        for (std::size_t c = 0; c < wanted.size(); ++c) {
            const int error = wanted[c] - taken[c];
            here_[x + 2][c] += 7 * error;
            below_[x][c] += 3 * error;
            below_[x + 1][c] += 5 * error;
            below_[x + 2][c] += error;
        }
    }

private:
    std::vector<Levels> here_; // a pixel more on both sides
    std::vector<Levels> below_;
};

Picture Mapped(PictureRows& rows, const std::vector<RGBQUAD>& table, bool dither) {
    const unsigned depth = table.size() <= 2 ? 1 : table.size() <= 16 ? 4 : 8;
    Picture picture = NewPicture(rows.Width(), rows.Height(), depth, table);
    const LockedPicture to(picture);
    const unsigned inByte = 8 / depth;
    NearestEntry nearest(table);
    Dithering errors(rows.Width());
    std::vector<Levels> colours;
    for (std::size_t y = 0; y < to.Height(); ++y) {
        StopIfInterrupted();
        BYTE* const row = to.RowFromTop(y);
        std::fill_n(row, to.Stride(), BYTE{0});
        ReadColours(rows, y, colours);
        errors.BeginRow();
        for (std::size_t x = 0; x < to.Width(); ++x) {
            const Levels wanted = dither ? errors.Wanted(colours[x], x) : colours[x];
            const std::size_t index = nearest.Find(wanted);
            row[x / inByte] = static_cast<BYTE>(row[x / inByte] | index << (8 - depth - x % inByte * depth));
            if (dither) {
                errors.PassOn(wanted, table[index], x);
            }
        }
    }
    return picture;
}

} // namespace

bool CanQuantise() {
    return true;
}

Picture Quantise(const Picture& picture, unsigned colours, bool dither) {
    try {
        PictureRows rows(picture, false);
        std::vector<RGBQUAD> table = AllColours(rows, colours);
        if (table.empty()) {
            table = Fitted(FirstTable(rows, colours), rows);
        }
        return Mapped(rows, table, dither);
    } catch (const Refusal& refusal) {
        throw Failure(kExitEffectFailed, refusal.what());
    }
}
#else
bool CanQuantise() {
    return false;
}

Picture Quantise(const Picture&, unsigned, bool) {
    throw Failure(kExitEffectFailed, "this program was built without the library that chooses colours");
}
#endif
