// Writing of PNG files, and the format as a whole.
#include "pictures/png_codec.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <vector>

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

// The rows of a picture in the form of the file.
struct FileRows {
    std::size_t width;
    std::size_t height;
    std::size_t rowBytes;
    unsigned depth;
    spng_color_type kind;
    std::vector<RGBQUAD> table;                // of indices; else empty
    std::function<BYTE*(std::size_t)> rowAt{}; // counted from the top, unchanged until the next call

    bool IsGrey() const {
        return kind == SPNG_COLOR_TYPE_GRAYSCALE;
    }
};

enum class Strategy { kUsual, kFiltered }; // as zlib has them

// How much work is put into making the file small.
struct Effort {
    int level;
    spng_filter_choice filters;
    Strategy strategy;

    // Differences of neighbours pack better than the pixels of photographs, the pixels themselves better where colours
    // repeat.
    static Effort ForRows(const FileRows& rows);
};

// Takes what the library writes. An exception must not pass through the library.
struct Writer {
    const Sink& sink;
    std::exception_ptr failed{};

    static int Write(spng_ctx*, void* writer, void* bytes, std::size_t size) {
        auto* const self = static_cast<Writer*>(writer);
        try {
            self->sink(bytes, size);
            return SPNG_OK;
        } catch (...) {
            self->failed = std::current_exception();
            return SPNG_IO_ERROR;
        }
    }
};

// Encodes `height` rows, `rowOf` telling which.
template <class RowOf>
void EncodeRows(spng_ctx* context, const FileRows& rows, std::size_t height, RowOf rowOf) {
    Check(spng_encode_image(context, nullptr, 0, SPNG_FMT_PNG, SPNG_ENCODE_PROGRESSIVE | SPNG_ENCODE_FINALIZE));
    for (std::size_t y = 0; y < height; ++y) {
        const int result = spng_encode_row(context, rows.rowAt(rowOf(y)), rows.rowBytes);
        Check(result == SPNG_EOI && y + 1 == height ? SPNG_OK : result);
    }
}

void PutHeader(spng_ctx* context, const FileRows& rows, std::size_t height, Effort effort) {
    Check(spng_set_option(context, SPNG_IMG_COMPRESSION_LEVEL, effort.level));
    Check(spng_set_option(context, SPNG_IMG_COMPRESSION_STRATEGY, static_cast<int>(effort.strategy)));
    Check(spng_set_option(context, SPNG_FILTER_CHOICE, effort.filters));
    spng_ihdr header{};
    header.width = static_cast<std::uint32_t>(rows.width);
    header.height = static_cast<std::uint32_t>(height);
    header.bit_depth = static_cast<std::uint8_t>(rows.depth);
    header.color_type = static_cast<std::uint8_t>(rows.kind);
    Check(spng_set_ihdr(context, &header));
    if (rows.kind == SPNG_COLOR_TYPE_INDEXED) {
        spng_plte entries{};
        entries.n_entries = static_cast<std::uint32_t>(rows.table.size());
        for (std::size_t i = 0; i < rows.table.size(); ++i) {
            entries.entries[i] = {rows.table[i].rgbRed, rows.table[i].rgbGreen, rows.table[i].rgbBlue, 0};
        }
        Check(spng_set_plte(context, &entries));
    }
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

Context NewContext(Writer& writer) {
    Context context(spng_ctx_new(SPNG_CTX_ENCODER), spng_ctx_free);
    Check(context ? SPNG_OK : SPNG_EMEM);
    Check(spng_set_png_stream(context.get(), Writer::Write, &writer));
    return context;
}

constexpr std::size_t kNeighbours = 8;

// The size of a file of some of the rows, from all over the picture and a few neighbours each.
std::size_t SampleSize(const FileRows& rows, Effort effort) {
    constexpr std::size_t kEnough = 512 << 10;
    const std::size_t part = std::max<std::size_t>(16, rows.rowBytes * rows.height / kEnough);
    const std::size_t bands = (rows.height / kNeighbours + part - 1) / part;
    std::size_t size = 0;
    const Sink count = [&size](const void*, std::size_t more) { size += more; };
    Writer writer{count};
    const Context context = NewContext(writer);
    PutHeader(context.get(), rows, bands * kNeighbours, effort);
    EncodeRows(context.get(), rows, bands * kNeighbours,
               [part](std::size_t y) { return y / kNeighbours * kNeighbours * part + y % kNeighbours; });
    return size;
}

Effort Effort::ForRows(const FileRows& rows) {
    constexpr Effort kQuick{2, SPNG_FILTER_CHOICE_PAETH, Strategy::kUsual}; // choosing filters takes as long as packing
    constexpr Effort kThorough{6, SPNG_FILTER_CHOICE_ALL, Strategy::kFiltered};
    constexpr Effort kUnfiltered{6, SPNG_FILTER_CHOICE_NONE, Strategy::kUsual};
    constexpr double kWorthIt = 0.95; // three times the time, for a twentieth of the size at least
    if (rows.depth < 8 || rows.kind == SPNG_COLOR_TYPE_INDEXED) {
        return kUnfiltered;
    }
    if (rows.height < kNeighbours) {
        return kThorough;
    }
    const std::size_t thorough = SampleSize(rows, kThorough);
    const std::size_t unfiltered = SampleSize(rows, kUnfiltered);
    const auto quick = static_cast<double>(SampleSize(rows, kQuick));
    if (kWorthIt * quick < static_cast<double>(std::min(thorough, unfiltered))) {
        return kQuick;
    }
    return thorough <= unfiltered ? kThorough : kUnfiltered;
}

void WriteRows(const FileRows& rows, const Metadata& given, const WriteOptions& options, const Sink& sink) {
    const Effort effort = options.compression < 0
                              ? Effort::ForRows(rows)
                              : Effort{options.compression, SPNG_FILTER_CHOICE_ALL, Strategy::kFiltered};
    Metadata metadata = given;
    Writer writer{sink};
    const Context context = NewContext(writer);
    try {
        PutHeader(context.get(), rows, rows.height, effort);
        PutMetadata(context.get(), metadata, rows.IsGrey());
        EncodeRows(context.get(), rows, rows.height, [](std::size_t y) { return y; });
    } catch (const Refusal&) {
        if (writer.failed) {
            std::rethrow_exception(writer.failed);
        }
        throw;
    }
}

void WriteIndexed(const Picture& picture, const Metadata& metadata, const WriteOptions& options, const Sink& sink) {
    IndexedRows rows(picture);
    const LockedPicture locked(picture);
    WriteRows({locked.Width(), locked.Height(), rows.RowBytes(), rows.Depth(),
               rows.IsGreyRamp() ? SPNG_COLOR_TYPE_GRAYSCALE : SPNG_COLOR_TYPE_INDEXED, rows.Table(),
               [&](std::size_t y) { return rows.Row(y); }},
              metadata, options, sink);
}

void WriteColour(const Picture& picture, const Metadata& metadata, const WriteOptions& options, const Sink& sink) {
    PictureRows rows(picture, metadata.alpha);
    const bool alpha = rows.Kind() == PictureRows::Form::kColourAndAlpha;
    const auto rowAt = [&rows](std::size_t y) {
        BYTE* const row = rows.Row(y);
        SwapRedAndBlue(row, rows.Width(), rows.Channels());
        return row;
    };
    WriteRows({rows.Width(),
               rows.Height(),
               rows.Width() * rows.Channels(),
               8,
               alpha ? SPNG_COLOR_TYPE_TRUECOLOR_ALPHA : SPNG_COLOR_TYPE_TRUECOLOR,
               {},
               rowAt},
              metadata, options, sink);
}

void WritePng(const Picture& picture, const Metadata& metadata, const WriteOptions& options, const Sink& sink) {
    const bool indexed = LockedPicture(picture).Header().biBitCount <= 8;
    (indexed ? WriteIndexed : WriteColour)(picture, metadata, options, sink);
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
