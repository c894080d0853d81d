#include "pictures/quantise.h"

#include <algorithm>
#include <memory>
#include <new>
#include <string>

#include "pictures/codec.h"
#include "pictures/failure.h"
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

OwnedPix PixOf(const Picture& picture) {
    PictureRows rows(picture, false);
    OwnedPix pix = Owned(pixCreate(static_cast<l_int32>(rows.Width()), static_cast<l_int32>(rows.Height()), 32));
    const bool grey = rows.Kind() == PictureRows::Form::kGrey;
    for (std::size_t y = 0; y < rows.Height(); ++y) {
        l_uint32* to = pixGetData(pix.get()) + y * static_cast<std::size_t>(pixGetWpl(pix.get()));
        const BYTE* from = rows.Row(y);
        for (std::size_t x = 0; x < rows.Width(); ++x, from += rows.Channels()) {
            composeRGBPixel(from[grey ? 0 : 2], from[grey ? 0 : 1], from[0], to++);
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

Picture FromPix(PIX* pix, unsigned depth) {
    Picture picture = NewPicture(static_cast<std::uint64_t>(pixGetWidth(pix)),
                                 static_cast<std::uint64_t>(pixGetHeight(pix)), depth, TableOf(pixGetColormap(pix)));
    const LockedPicture to(picture);
    const unsigned inByte = 8 / depth;
    for (std::size_t y = 0; y < to.Height(); ++y) {
        const l_uint32* const line = pixGetData(pix) + y * static_cast<std::size_t>(pixGetWpl(pix));
        BYTE* const row = to.RowFromTop(y);
        std::fill_n(row, to.Stride(), BYTE{0});
        for (std::size_t x = 0; x < to.Width(); ++x) {
            const auto index = static_cast<unsigned>(GET_DATA_BYTE(line, x));
            row[x / inByte] = static_cast<BYTE>(row[x / inByte] | index << (8 - depth - x % inByte * depth));
        }
    }
    return picture;
}

} // namespace

bool CanQuantise() {
    return true;
}

Picture Quantise(const Picture& picture, unsigned colours, bool dither) {
    constexpr l_int32 kBitsOfChannel = 5; // of its histogram; measured the best
    constexpr l_int32 kEveryPixel = 1;
    constexpr l_int32 kIndicesOf8Bits = 8;
    try {
        const OwnedPix source = PixOf(picture);
        // It may choose a colour more than it was asked for.
        for (auto asked = static_cast<l_int32>(colours); asked >= 2; --asked) {
            const OwnedPix reduced = Owned(pixMedianCutQuantGeneral(source.get(), dither ? 1 : 0, kIndicesOf8Bits,
                                                                    asked, kBitsOfChannel, kEveryPixel, 0));
            if (static_cast<unsigned>(pixcmapGetCount(pixGetColormap(reduced.get()))) <= colours) {
                return FromPix(reduced.get(), colours <= 16 ? 4 : 8);
            }
        }
    } catch (const Refusal& refusal) {
        throw Failure(kExitEffectFailed, refusal.what());
    }
    throw Failure(kExitEffectFailed, "no " + std::to_string(colours) + " colours can be chosen for it");
}
#else
bool CanQuantise() {
    return false;
}

Picture Quantise(const Picture&, unsigned, bool) {
    throw Failure(kExitEffectFailed, "this program was built without the library that chooses colours");
}
#endif
