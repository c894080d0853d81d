// Reading of TIFF files: the first picture of a file. Grey levels, colour tables and red, green, blue of up to 16 bits
// a channel are taken as they are; of the other kinds the library makes red, green, blue itself.
#include "pictures/tiff_codec.h"

#include <algorithm>
#include <cstring>

#include "pictures/indexed_rows.h"
#include "pictures/metadata.h"
#include "pictures/picture_rows.h"

namespace {

constexpr unsigned kMostSamples = 8; // of a pixel: what is beyond is no picture

struct Layout {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint16_t bits = 1;
    std::uint16_t samples = 1;
    std::uint16_t photometric = PHOTOMETRIC_MINISBLACK;
    std::uint16_t planar = PLANARCONFIG_CONTIG;
    std::uint16_t compression = COMPRESSION_NONE;
    std::uint16_t alpha = EXTRASAMPLE_UNSPECIFIED; // of the sample behind the colours
    std::uint16_t sampleFormat = SAMPLEFORMAT_UINT;
    std::uint16_t orientation = ORIENTATION_TOPLEFT;
    bool tiled = false;

    unsigned Colours() const {
        return photometric == PHOTOMETRIC_RGB ? 3 : 1;
    }
    bool HasAlpha() const {
        return samples > Colours() && alpha != EXTRASAMPLE_UNSPECIFIED;
    }
    bool IsGrey() const {
        return photometric == PHOTOMETRIC_MINISBLACK || photometric == PHOTOMETRIC_MINISWHITE;
    }
    // Whether the samples are read here and not by the library's own conversion.
    bool IsPlain() const {
        const bool index = (IsGrey() || photometric == PHOTOMETRIC_PALETTE) && bits <= 8 && samples == 1;
        const bool wide = (IsGrey() || photometric == PHOTOMETRIC_RGB) && (bits == 8 || bits == 16);
        return sampleFormat == SAMPLEFORMAT_UINT && samples >= Colours() && (index || wide);
    }
    unsigned Depth() const {
        if (!IsPlain() || HasAlpha()) {
            return 32;
        }
        return Colours() == 3 ? 24 : bits == 16 ? 8 : bits == 2 ? 4 : bits;
    }
};

Layout LayoutOf(TIFF* file) {
    Layout layout;
    TIFFGetField(file, TIFFTAG_IMAGEWIDTH, &layout.width);
    TIFFGetField(file, TIFFTAG_IMAGELENGTH, &layout.height);
    TIFFGetFieldDefaulted(file, TIFFTAG_BITSPERSAMPLE, &layout.bits);
    TIFFGetFieldDefaulted(file, TIFFTAG_SAMPLESPERPIXEL, &layout.samples);
    TIFFGetField(file, TIFFTAG_PHOTOMETRIC, &layout.photometric);
    TIFFGetFieldDefaulted(file, TIFFTAG_PLANARCONFIG, &layout.planar);
    TIFFGetFieldDefaulted(file, TIFFTAG_COMPRESSION, &layout.compression);
    TIFFGetFieldDefaulted(file, TIFFTAG_SAMPLEFORMAT, &layout.sampleFormat);
    TIFFGetFieldDefaulted(file, TIFFTAG_ORIENTATION, &layout.orientation);
    layout.tiled = TIFFIsTiled(file) != 0;
    std::uint16_t extraCount = 0;
    std::uint16_t* extra = nullptr;
    if (TIFFGetField(file, TIFFTAG_EXTRASAMPLES, &extraCount, &extra) != 0 && extraCount > 0) {
        layout.alpha = extra[0];
    }
    if (layout.compression == COMPRESSION_JPEG && layout.photometric == PHOTOMETRIC_YCBCR) {
        TIFFSetField(file, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        layout.photometric = PHOTOMETRIC_RGB;
    }
    return layout;
}

std::vector<RGBQUAD> TableOf(TIFF* file, const Layout& layout) {
    if (!layout.IsPlain() || layout.Depth() > 8) {
        return {};
    }
    if (layout.IsGrey()) {
        const unsigned bits = std::min<unsigned>(layout.bits, 8);
        std::vector table(GreyRamp(bits).begin(), GreyRamp(bits).end());
        if (layout.photometric == PHOTOMETRIC_MINISWHITE && bits < 8) {
            std::reverse(table.begin(), table.end());
        }
        return table;
    }
    std::uint16_t* red = nullptr;
    std::uint16_t* green = nullptr;
    std::uint16_t* blue = nullptr;
    Require(TIFFGetField(file, TIFFTAG_COLORMAP, &red, &green, &blue) != 0, "it has no colour table");
    const std::size_t count = std::size_t{1} << layout.bits;
    // Some writers store levels of 8 bits in the lower or in the upper half of the 16 that there should be.
    const auto none = [&](unsigned bits) {
        const auto clear = [bits](unsigned level) { return (level & bits) == 0; };
        return std::all_of(red, red + count, clear) && std::all_of(green, green + count, clear) &&
               std::all_of(blue, blue + count, clear);
    };
    const bool lower = none(0xFF00);
    const bool upper = none(0x00FF);
    const auto level = [&](unsigned value) {
        return lower ? static_cast<BYTE>(value) : upper ? static_cast<BYTE>(value >> 8) : Rounded(value);
    };
    std::vector<RGBQUAD> table;
    for (std::size_t i = 0; i < count; ++i) {
        table.push_back({level(blue[i]), level(green[i]), level(red[i]), 0});
    }
    return table;
}

// Puts decoded samples into the picture.
class Placement {
public:
    Placement(const LockedPicture& picture, const Layout& layout) : picture_(picture), layout_(layout) {}

    // `count` pixels from `x` on in row `y`; `samples` stand together for each pixel, or are those of one `plane`.
    void Put(std::size_t x, std::size_t y, std::size_t count, unsigned plane, const BYTE* samples) const {
        BYTE* const row = picture_.RowFromTop(y);
        if (layout_.bits < 8) {
            PutSmall(row, x, count, samples);
            return;
        }
        const bool together = layout_.planar == PLANARCONFIG_CONTIG;
        const unsigned step = together ? layout_.samples : 1;
        const unsigned planes = layout_.Colours() + (layout_.HasAlpha() ? 1 : 0);
        for (unsigned i = together ? 0 : plane; i < (together ? planes : std::min(plane + 1, planes)); ++i) {
            PutChannel(row, x, count, i, samples + (together ? i : 0) * (layout_.bits / 8U), step);
        }
    }

private:
    // Indices begin at a whole byte: tiles are multiples of 16 pixels wide.
    void PutSmall(BYTE* row, std::size_t x, std::size_t count, const BYTE* samples) const {
        if (layout_.bits == 2) {
            SpreadTwoBits(samples, row + x / 2, count);
        } else {
            std::memcpy(row + x * layout_.bits / 8, samples, (count * layout_.bits + 7) / 8);
        }
    }

    void PutChannel(BYTE* row, std::size_t x, std::size_t count, unsigned channel, const BYTE* from,
                    unsigned step) const {
        const std::size_t pixelBytes = picture_.Header().biBitCount / 8U;
        const bool isAlpha = channel == layout_.Colours();
        const bool isGrey = layout_.Colours() == 1;
        const std::size_t first = isAlpha ? 3 : isGrey ? 0 : 2 - channel;
        const std::size_t copies = isGrey && !isAlpha && pixelBytes == 4 ? 3 : 1;
        const BYTE inverted = layout_.photometric == PHOTOMETRIC_MINISWHITE && !isAlpha ? 255 : 0;
        const std::size_t stepBytes = step * (layout_.bits / 8U);
        BYTE* to = row + x * pixelBytes + first;
        for (std::size_t i = 0; i < count; ++i, from += stepBytes, to += pixelBytes) {
            BYTE value = from[0];
            if (layout_.bits == 16) {
                std::uint16_t wide = 0;
                std::memcpy(&wide, from, sizeof wide);
                value = Rounded(wide);
            }
            std::fill_n(to, copies, static_cast<BYTE>(value ^ inverted));
        }
    }

    const LockedPicture& picture_;
    const Layout& layout_;
};

// Tiles and strips are the same thing here: blocks from left to right and from the top down, of each plane.
void DecodePlain(TIFF* file, const TiffMemory& memory, const Layout& layout, const LockedPicture& picture) {
    std::uint32_t blockWidth = layout.width;
    std::uint32_t blockHeight = layout.height;
    TIFFGetField(file, layout.tiled ? TIFFTAG_TILEWIDTH : TIFFTAG_IMAGEWIDTH, &blockWidth);
    TIFFGetField(file, layout.tiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, &blockHeight);
    blockHeight = layout.tiled ? blockHeight : std::min(blockHeight, layout.height);
    const auto rowBytes = static_cast<std::size_t>(layout.tiled ? TIFFTileRowSize(file) : TIFFScanlineSize(file));
    const tmsize_t blockBytes = layout.tiled ? TIFFTileSize(file) : TIFFStripSize(file);
    Require(blockWidth > 0 && blockHeight > 0 && rowBytes > 0 && blockBytes > 0, "it is damaged");
    Require(!layout.tiled || blockWidth % 16 == 0, "its tiles have no valid size");
    // A tile may be larger than the picture, but not by much.
    Require(static_cast<std::uint64_t>(blockBytes) <=
                std::uint64_t{layout.width + 4096} * (std::uint64_t{layout.height} + 4096) * 16,
            "there is more in it than its header says");
    std::vector<BYTE> block(static_cast<std::size_t>(blockBytes));
    const Placement placement(picture, layout);
    const unsigned planes = layout.planar == PLANARCONFIG_SEPARATE ? layout.samples : 1;
    std::uint32_t number = 0;
    for (unsigned plane = 0; plane < planes; ++plane) {
        for (std::uint64_t top = 0; top < layout.height; top += blockHeight) {
            const std::uint64_t rows = std::min<std::uint64_t>(blockHeight, layout.height - top);
            for (std::uint64_t left = 0; left < layout.width; left += blockWidth, ++number) {
                const tmsize_t wanted = layout.tiled ? blockBytes : static_cast<tmsize_t>(rows * rowBytes);
                const tmsize_t got = layout.tiled ? TIFFReadEncodedTile(file, number, block.data(), wanted)
                                                  : TIFFReadEncodedStrip(file, number, block.data(), wanted);
                if (got < wanted) {
                    memory.Fail();
                }
                const std::uint64_t columns = std::min<std::uint64_t>(blockWidth, layout.width - left);
                for (std::uint64_t y = 0; y < rows; ++y) {
                    placement.Put(static_cast<std::size_t>(left), static_cast<std::size_t>(top + y),
                                  static_cast<std::size_t>(columns), plane,
                                  block.data() + static_cast<std::size_t>(y) * rowBytes);
                }
            }
        }
    }
}

// The library's pixels hold red in the lowest byte, and begin at the bottom.
void DecodeByLibrary(TIFF* file, const TiffMemory& memory, const LockedPicture& picture) {
    auto* const pixels = reinterpret_cast<std::uint32_t*>(picture.Bytes() + picture.PixelOffset());
    if (TIFFReadRGBAImageOriented(file, static_cast<std::uint32_t>(picture.Width()),
                                  static_cast<std::uint32_t>(picture.Height()), pixels, ORIENTATION_BOTLEFT, 1) == 0) {
        memory.Fail();
    }
    for (std::size_t y = 0; y < picture.Height(); ++y) {
        SwapRedAndBlue(picture.RowFromTop(y), picture.Width(), 4);
    }
}

// From colours that were multiplied by their alpha.
void DivideByAlpha(const LockedPicture& picture) {
    for (std::size_t y = 0; y < picture.Height(); ++y) {
        BYTE* pixel = picture.RowFromTop(y);
        for (std::size_t x = 0; x < picture.Width(); ++x, pixel += 4) {
            const unsigned alpha = pixel[3];
            for (std::size_t i = 0; i < 3 && alpha != 0; ++i) {
                pixel[i] = static_cast<BYTE>(std::min((pixel[i] * 255U + alpha / 2) / alpha, 255U));
            }
        }
    }
}

void TakeMetadata(TIFF* file, const Layout& layout, Metadata& metadata) {
    std::uint32_t size = 0;
    void* profile = nullptr;
    if (TIFFGetField(file, TIFFTAG_ICCPROFILE, &size, &profile) != 0) {
        const auto* const bytes = static_cast<const BYTE*>(profile);
        metadata.profile.assign(bytes, bytes + size);
    }
    std::uint16_t unit = RESUNIT_INCH;
    float x = 0;
    float y = 0;
    TIFFGetFieldDefaulted(file, TIFFTAG_RESOLUTIONUNIT, &unit);
    TIFFGetField(file, TIFFTAG_XRESOLUTION, &x);
    TIFFGetField(file, TIFFTAG_YRESOLUTION, &y);
    const double dotsInInch = unit == RESUNIT_INCH ? 1 : unit == RESUNIT_CENTIMETER ? 2.54 : 0;
    metadata.xPixelsPerMetre = PerMetre(x * dotsInInch);
    metadata.yPixelsPerMetre = PerMetre(y * dotsInInch);
    metadata.alpha = layout.HasAlpha();
}

void TakeNotes(TIFF* file, const Layout& layout, LoadedPicture& loaded) {
    if (layout.bits == 16) {
        loaded.notes.emplace_back("its channels of 16 bits were rounded to 8");
    }
    if (!layout.IsPlain()) {
        loaded.notes.emplace_back("its colours became red, green and blue without its profile");
        loaded.metadata.profile.clear();
    }
    if (layout.photometric == PHOTOMETRIC_PALETTE && layout.samples > 1) {
        loaded.notes.emplace_back(
            "what it holds besides the indices into its colour table, such as alpha, was left out");
    }
    if (TIFFLastDirectory(file) == 0) {
        loaded.notes.emplace_back("only the first of its pictures was read");
    }
}

} // namespace

LoadedPicture ReadTiff(ByteView file, const ReadOptions& options) {
    TiffMemory memory(file);
    // As much as a picture of the largest size needs, in one of the library's own blocks.
    const auto tiff = memory.Open("rm", std::min<std::uint64_t>(options.maxPixels, 0x7FFFFFF) * 16 + (64U << 20));
    const Layout layout = LayoutOf(tiff.get());
    CheckSize(layout.width, layout.height, file.size(), 0, options);
    Require(layout.samples >= 1 && layout.samples <= kMostSamples,
            std::to_string(layout.samples) + " samples for each pixel are not supported");
    Require(layout.bits <= 16, "channels of " + std::to_string(layout.bits) + " bits are not supported");
    LoadedPicture loaded{NewPicture(layout.width, layout.height, layout.Depth(), TableOf(tiff.get(), layout)),
                         ImageFormat::kTiff,
                         {},
                         {}};
    {
        const LockedPicture picture(loaded.picture);
        if (layout.IsPlain()) {
            DecodePlain(tiff.get(), memory, layout, picture);
        } else {
            DecodeByLibrary(tiff.get(), memory, picture);
        }
        if (layout.HasAlpha() && (layout.alpha == EXTRASAMPLE_ASSOCALPHA || !layout.IsPlain())) {
            DivideByAlpha(picture);
        }
    }
    if (!layout.IsPlain() && !layout.HasAlpha()) {
        loaded.picture = As24Bit(loaded.picture);
    }
    TakeMetadata(tiff.get(), layout, loaded.metadata);
    TakeNotes(tiff.get(), layout, loaded);
    ApplyOrientation(loaded, layout.orientation);
    return loaded;
}
