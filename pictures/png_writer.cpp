// Writing of PNG files, and the format as a whole.
#include "pictures/png_codec.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include <spng.h>

#include "pictures/indexed_rows.h"
#include "pictures/metadata.h"
#include "pictures/picture_rows.h"

namespace {

using Context = std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)>;

void Check(int result) {
    if (result == SPNG_EMEM) {
        throw std::bad_alloc();
    }
    Require(result == SPNG_OK, spng_strerror(result));
}

void PutHeader(spng_ctx* context, const LockedPicture& picture, unsigned depth, unsigned colourType) {
    spng_ihdr header{};
    header.width = static_cast<std::uint32_t>(picture.Width());
    header.height = static_cast<std::uint32_t>(picture.Height());
    header.bit_depth = static_cast<std::uint8_t>(depth);
    header.color_type = static_cast<std::uint8_t>(colourType);
    Check(spng_set_ihdr(context, &header));
}

// The library keeps pointers to profile and EXIF until the file is complete.
void PutMetadata(spng_ctx* context, Metadata& metadata, bool grey) {
    if (metadata.xPixelsPerMetre != 0 && metadata.yPixelsPerMetre != 0) {
        spng_phys resolution{metadata.xPixelsPerMetre, metadata.yPixelsPerMetre, 1};
        Check(spng_set_phys(context, &resolution));
    }
    if (grey ? IsGreyProfile(metadata.profile) : IsColourProfile(metadata.profile)) {
        spng_iccp profile{"icc", metadata.profile.size(), reinterpret_cast<char*>(metadata.profile.data())};
        Check(spng_set_iccp(context, &profile));
    }
    if (!metadata.exif.empty()) {
        spng_exif exif{metadata.exif.size(), reinterpret_cast<char*>(metadata.exif.data())};
        Check(spng_set_exif(context, &exif));
    }
}

// `rowAt` gives each row as the format has it, and may change it.
template <class RowAt>
void EncodeRows(spng_ctx* context, std::size_t height, std::size_t rowBytes, RowAt rowAt) {
    Check(spng_encode_image(context, nullptr, 0, SPNG_FMT_PNG, SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE));
    for (std::size_t y = 0; y < height; ++y) {
        const int result = spng_encode_row(context, rowAt(y), rowBytes);
        Check(result == SPNG_EOI && y + 1 == height ? SPNG_OK : result);
    }
}

void PutTable(spng_ctx* context, const std::vector<RGBQUAD>& table) {
    spng_plte entries{};
    entries.n_entries = static_cast<std::uint32_t>(table.size());
    for (std::size_t i = 0; i < table.size(); ++i) {
        entries.entries[i] = {table[i].rgbRed, table[i].rgbGreen, table[i].rgbBlue, 0};
    }
    Check(spng_set_plte(context, &entries));
}

void EncodeIndexed(spng_ctx* context, const Picture& picture, Metadata& metadata) {
    IndexedRows rows(picture);
    const bool grey = rows.IsGreyRamp();
    const LockedPicture locked(picture);
    PutHeader(context, locked, rows.Depth(), grey ? SPNG_COLOR_TYPE_GRAYSCALE : SPNG_COLOR_TYPE_INDEXED);
    if (!grey) {
        PutTable(context, rows.Table());
    }
    PutMetadata(context, metadata, grey);
    EncodeRows(context, locked.Height(), rows.RowBytes(), [&](std::size_t y) { return rows.Row(y); });
}

void EncodeColour(spng_ctx* context, const Picture& picture, Metadata& metadata) {
    PictureRows rows(picture, metadata.alpha);
    const bool alpha = rows.Kind() == PictureRows::Form::kColourAndAlpha;
    PutHeader(context, LockedPicture(picture), 8, alpha ? SPNG_COLOR_TYPE_TRUECOLOR_ALPHA : SPNG_COLOR_TYPE_TRUECOLOR);
    PutMetadata(context, metadata, false);
    EncodeRows(context, rows.Height(), rows.Width() * rows.Channels(), [&](std::size_t y) {
        BYTE* const row = rows.Row(y);
        SwapRedAndBlue(row, rows.Width(), rows.Channels());
        return row;
    });
}

void WritePng(const Picture& picture, const Metadata& given, const WriteOptions& options, const Sink& sink) {
    Metadata metadata = given;
    const Context context(spng_ctx_new(SPNG_CTX_ENCODER), spng_ctx_free);
    Check(context ? SPNG_OK : SPNG_EMEM);
    Check(spng_set_option(context.get(), SPNG_ENCODE_TO_BUFFER, 1));
    if (options.compression >= 0) {
        Check(spng_set_option(context.get(), SPNG_IMG_COMPRESSION_LEVEL, options.compression));
    }
    if (LockedPicture(picture).Header().biBitCount <= 8) {
        EncodeIndexed(context.get(), picture, metadata);
    } else {
        EncodeColour(context.get(), picture, metadata);
    }
    std::size_t size = 0;
    int result = SPNG_OK;
    const std::unique_ptr<void, decltype(&std::free)> bytes(spng_get_png_buffer(context.get(), &size, &result),
                                                            std::free);
    Check(result);
    sink(bytes.get(), size);
}

bool IsPng(ByteView file) {
    constexpr BYTE kSignature[] = {0x89, 'P', 'N', 'G'};
    return file.size() >= sizeof kSignature && std::memcmp(file.data(), kSignature, sizeof kSignature) == 0;
}

std::string Library() {
    return std::string("libspng ") + spng_version_string();
}

constexpr const char* kEndings[] = {"png"};

} // namespace

const Codec kPngCodec{
    ImageFormat::kPng, "PNG",    kEndings, kHoldsAlpha | kHoldsProfile | kHoldsExif | kHoldsResolution, IsPng,
    ReadPng,           WritePng, Library};
