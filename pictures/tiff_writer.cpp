// Writing of TIFF files, and the format as a whole.
#include "pictures/tiff_codec.h"

#include <array>
#include <cstring>

#include "pictures/indexed_rows.h"
#include "pictures/metadata.h"
#include "pictures/picture_rows.h"

namespace {

class Writer {
public:
    explicit Writer(TIFF* file) : file_(file) {}

    template <class... Value>
    void Set(std::uint32_t tag, Value... value) {
        Require(TIFFSetField(file_, tag, value...) != 0, "a field cannot be stored");
    }

    void SetForm(const LockedPicture& picture, unsigned bits, unsigned samples, unsigned photometric) {
        Set(TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(picture.Width()));
        Set(TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(picture.Height()));
        Set(TIFFTAG_BITSPERSAMPLE, bits);
        Set(TIFFTAG_SAMPLESPERPIXEL, samples);
        Set(TIFFTAG_PHOTOMETRIC, photometric);
        Set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
        Set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
    }

    void SetCompression(const WriteOptions& options, bool continuous) {
        Set(TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE);
        if (continuous) { // differences of neighbours pack better
            Set(TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
        }
        if (options.compression >= 0) {
            Set(TIFFTAG_ZIPQUALITY, options.compression == 0 ? 1 : options.compression);
        }
        Set(TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(file_, 0));
    }

    void SetMetadata(const Metadata& metadata, bool grey) {
        if (metadata.xPixelsPerMetre != 0 && metadata.yPixelsPerMetre != 0) {
            Set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
            Set(TIFFTAG_XRESOLUTION, DotsPerInch(metadata.xPixelsPerMetre));
            Set(TIFFTAG_YRESOLUTION, DotsPerInch(metadata.yPixelsPerMetre));
        }
        if (grey ? IsGreyProfile(metadata.profile) : IsColourProfile(metadata.profile)) {
            Set(TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(metadata.profile.size()), metadata.profile.data());
        }
    }

    // False when the library gave up.
    template <class RowAt>
    bool WriteRows(std::size_t height, RowAt rowAt) {
        for (std::size_t y = 0; y < height; ++y) {
            if (TIFFWriteScanline(file_, rowAt(y), static_cast<std::uint32_t>(y), 0) != 1) {
                return false;
            }
        }
        return TIFFFlush(file_) == 1;
    }

private:
    TIFF* file_;
};

void SetTable(Writer& writer, const std::vector<RGBQUAD>& table) {
    std::array<std::array<std::uint16_t, 256>, 3> levels{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        levels[0][i] = static_cast<std::uint16_t>(table[i].rgbRed * 257);
        levels[1][i] = static_cast<std::uint16_t>(table[i].rgbGreen * 257);
        levels[2][i] = static_cast<std::uint16_t>(table[i].rgbBlue * 257);
    }
    writer.Set(TIFFTAG_COLORMAP, levels[0].data(), levels[1].data(), levels[2].data());
}

bool WriteIndexed(Writer& writer, const Picture& picture, const Metadata& metadata, const WriteOptions& options) {
    IndexedRows rows(picture);
    const bool grey = rows.IsGreyRamp();
    const LockedPicture locked(picture);
    writer.SetForm(locked, rows.Depth(), 1, grey ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_PALETTE);
    writer.SetCompression(options, grey && rows.Depth() == 8);
    if (!grey) {
        SetTable(writer, rows.Table());
    }
    writer.SetMetadata(metadata, grey);
    return writer.WriteRows(locked.Height(), [&](std::size_t y) { return rows.Row(y); });
}

bool WriteColour(Writer& writer, const Picture& picture, const Metadata& metadata, const WriteOptions& options) {
    PictureRows rows(picture, metadata.alpha);
    writer.SetForm(LockedPicture(picture), 8, static_cast<unsigned>(rows.Channels()), PHOTOMETRIC_RGB);
    if (rows.Kind() == PictureRows::Form::kColourAndAlpha) {
        const std::uint16_t kind = EXTRASAMPLE_UNASSALPHA;
        writer.Set(TIFFTAG_EXTRASAMPLES, 1, &kind);
    }
    writer.SetCompression(options, true);
    writer.SetMetadata(metadata, false);
    return writer.WriteRows(rows.Height(), [&](std::size_t y) {
        BYTE* const row = rows.Row(y);
        SwapRedAndBlue(row, rows.Width(), rows.Channels());
        return row;
    });
}

void WriteTiff(const Picture& picture, const Metadata& metadata, const WriteOptions& options, const Sink& sink) {
    TiffMemory memory;
    {
        const auto file = memory.Open("w", 0);
        Writer writer(file.get());
        const bool indexed = LockedPicture(picture).Header().biBitCount <= 8;
        if (!(indexed ? WriteIndexed : WriteColour)(writer, picture, metadata, options)) {
            memory.Fail();
        }
    }
    sink(memory.Written().data(), memory.Written().size());
}

bool IsTiff(ByteView file) {
    const auto begins = [file](const char* with) { return file.size() >= 4 && std::memcmp(file.data(), with, 4) == 0; };
    return begins("II*\0") || begins("MM\0*") || begins("II+\0") || begins("MM\0+");
}

std::string Library() {
    const std::string version = TIFFGetVersion(); // "LIBTIFF, Version 4.5.0" and a line of copyright
    const std::string line = version.substr(0, version.find('\n'));
    return "libtiff " + line.substr(line.rfind(' ') + 1);
}

constexpr const char* kEndings[] = {"tif", "tiff"};

} // namespace

const Codec kTiffCodec{ImageFormat::kTiff, "TIFF",    kEndings, kHoldsAlpha | kHoldsProfile | kHoldsResolution, IsTiff,
                       ReadTiff,           WriteTiff, Library};
