// Reading of PNG files.
#include "pictures/png_codec.h"

#include <cmath>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include <spng.h>

#include "pictures/indexed_rows.h"
#include "pictures/metadata.h"

namespace {

// Deflate makes at most 1032 bytes of one, and PNG keeps at most 8 pixels in a byte.
constexpr std::uint64_t kMostPixelsInAByte = 8 * 1032;

// What stands beside the pixels, unpacked: one piece, and all that is kept.
constexpr std::size_t kLargestChunk = std::size_t{16} << 20;
constexpr std::size_t kLargestCache = std::size_t{64} << 20;

using Context = std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)>;

void Check(int result) {
    if (result == SPNG_EMEM) {
        throw std::bad_alloc();
    }
    Require(result == SPNG_OK, std::string("it cannot be decoded: ") + spng_strerror(result));
}

// How the rows come from the decoder, and what becomes of them.
struct Plan {
    unsigned depth;       // of the picture
    int format;           // of the decoder
    int flags;            // of the decoder
    std::size_t channels; // in a row that is not made in its place, of `fileDepth` bits each; 0 when it is
    unsigned fileDepth;
    std::vector<RGBQUAD> table{};
};

std::vector<RGBQUAD> TableOf(spng_ctx* context) {
    spng_plte entries{};
    Check(spng_get_plte(context, &entries));
    std::vector<RGBQUAD> table;
    for (std::uint32_t i = 0; i < entries.n_entries; ++i) {
        table.push_back({entries.entries[i].blue, entries.entries[i].green, entries.entries[i].red, 0});
    }
    return table;
}

bool IsTransparent(spng_ctx* context, unsigned colourType) {
    spng_trns transparency{};
    const int result = spng_get_trns(context, &transparency);
    if (result == SPNG_ECHUNKAVAIL) {
        return false;
    }
    Check(result);
    bool any = colourType != SPNG_COLOR_TYPE_INDEXED;
    for (std::uint32_t i = 0; i < transparency.n_type3_entries; ++i) {
        any = any || transparency.type3_alpha[i] != 255;
    }
    return any;
}

Plan PlanFor(spng_ctx* context, const spng_ihdr& header) {
    const unsigned depth = header.bit_depth;
    const unsigned type = header.color_type;
    const bool oneChannel = type == SPNG_COLOR_TYPE_GRAYSCALE || type == SPNG_COLOR_TYPE_INDEXED;
    if (IsTransparent(context, type)) {
        return depth == 16 ? Plan{32, SPNG_FMT_RGBA16, SPNG_DECODE_TRNS, 4, 16}
                           : Plan{32, SPNG_FMT_RGBA8, SPNG_DECODE_TRNS, 0, 8};
    }
    if (depth == 16) {
        const std::size_t channels = oneChannel ? 1 : type == SPNG_COLOR_TYPE_GRAYSCALE_ALPHA ? 2 : type == 2 ? 3 : 4;
        Plan plan{channels == 1 ? 8U : channels == 3 ? 24U : 32U, SPNG_FMT_PNG, 0, channels, 16};
        plan.table.assign(GreyRamp(8).begin(), channels == 1 ? GreyRamp(8).end() : GreyRamp(8).begin());
        return plan;
    }
    if (!oneChannel) {
        return type == SPNG_COLOR_TYPE_TRUECOLOR ? Plan{24, SPNG_FMT_RGB8, 0, 0, 8} : Plan{32, SPNG_FMT_RGBA8, 0, 0, 8};
    }
    Plan plan{depth == 2 ? 4 : depth, SPNG_FMT_PNG, 0, depth == 2 ? 1U : 0U, depth};
    plan.table = type == SPNG_COLOR_TYPE_INDEXED ? TableOf(context)
                                                 : std::vector(GreyRamp(depth).begin(), GreyRamp(depth).end());
    return plan;
}

// One row of channels of 16 bits, rounded to 8.
void RoundRow(const BYTE* from, BYTE* to, std::size_t width, std::size_t channels) {
    const auto next = [&from] {
        std::uint16_t value = 0;
        std::memcpy(&value, from, sizeof value);
        from += sizeof value;
        return Rounded(value);
    };
    for (std::size_t x = 0; x < width; ++x) {
        if (channels <= 2) {
            const BYTE grey = next();
            const std::size_t copies = channels == 1 ? 1 : 3;
            to = std::fill_n(to, copies, grey);
        } else {
            to[2] = next();
            to[1] = next();
            to[0] = next();
            to += 3;
        }
        if (channels % 2 == 0) {
            *to++ = next();
        }
    }
}

void DecodeApart(spng_ctx* context, const Plan& plan, const LockedPicture& picture) {
    std::size_t size = 0;
    Check(spng_decoded_image_size(context, plan.format, &size));
    std::vector<BYTE> samples(size);
    Check(spng_decode_image(context, samples.data(), size, plan.format, plan.flags));
    const std::size_t rowBytes = size / picture.Height();
    for (std::size_t y = 0; y < picture.Height(); ++y) {
        const BYTE* const from = samples.data() + y * rowBytes;
        if (plan.fileDepth == 2) {
            SpreadTwoBits(from, picture.RowFromTop(y), picture.Width());
        } else {
            RoundRow(from, picture.RowFromTop(y), picture.Width(), plan.channels);
        }
    }
}

void DecodeInPlace(spng_ctx* context, const Plan& plan, const LockedPicture& picture, bool interlaced) {
    if (interlaced) { // rows grow pixel by pixel, and bit by bit
        std::memset(picture.Bytes() + picture.PixelOffset(), 0, picture.Stride() * picture.Height());
    }
    std::size_t size = 0;
    Check(spng_decoded_image_size(context, plan.format, &size));
    Check(spng_decode_image(context, nullptr, 0, plan.format, plan.flags | SPNG_DECODE_PROGRESSIVE));
    const std::size_t rowBytes = size / picture.Height();
    const std::size_t colours = plan.depth > 8 ? picture.Width() : 0;
    int result = SPNG_OK;
    while (result == SPNG_OK) {
        spng_row_info info{};
        result = spng_get_row_info(context, &info);
        if (result == SPNG_EOI) { // of an interlaced picture whose last rows have no pixels
            break;
        }
        Check(result);
        BYTE* const row = picture.RowFromTop(info.row_num);
        result = spng_decode_row(context, row, rowBytes);
        if (!interlaced) {
            SwapRedAndBlue(row, colours, plan.depth / 8);
        }
    }
    Check(result == SPNG_EOI ? SPNG_OK : result);
    for (std::size_t y = 0; interlaced && y < picture.Height(); ++y) {
        SwapRedAndBlue(picture.RowFromTop(y), colours, plan.depth / 8);
    }
}

// Screens of today want 1 / 2.2; with a profile the number means nothing.
bool HasOddGamma(spng_ctx* context, const Metadata& metadata) {
    constexpr double kUsual = 0.45455;
    double gamma = kUsual;
    std::uint8_t intent = 0;
    return metadata.profile.empty() && spng_get_srgb(context, &intent) != SPNG_OK &&
           spng_get_gama(context, &gamma) == SPNG_OK && std::fabs(gamma - kUsual) > 0.01;
}

void TakeMetadata(spng_ctx* context, Metadata& metadata) {
    spng_iccp profile{};
    if (spng_get_iccp(context, &profile) == SPNG_OK) {
        metadata.profile.assign(profile.profile, profile.profile + profile.profile_len);
    }
    spng_exif exif{};
    if (spng_get_exif(context, &exif) == SPNG_OK) {
        metadata.exif.assign(exif.data, exif.data + exif.length);
    }
    spng_phys resolution{};
    if (spng_get_phys(context, &resolution) == SPNG_OK && resolution.unit_specifier == 1) {
        metadata.xPixelsPerMetre = resolution.ppu_x;
        metadata.yPixelsPerMetre = resolution.ppu_y;
    }
}

} // namespace

LoadedPicture ReadPng(ByteView file, const ReadOptions& options) {
    const Context context(spng_ctx_new(0), spng_ctx_free);
    Check(context ? SPNG_OK : SPNG_EMEM);
    Check(spng_set_chunk_limits(context.get(), kLargestChunk, kLargestCache));
    Check(spng_set_crc_action(context.get(), SPNG_CRC_ERROR, SPNG_CRC_DISCARD));
    Check(spng_set_png_buffer(context.get(), file.data(), file.size()));
    spng_ihdr header{};
    Check(spng_get_ihdr(context.get(), &header));
    CheckSize(header.width, header.height, file.size(), kMostPixelsInAByte, options);
    const Plan plan = PlanFor(context.get(), header);
    LoadedPicture loaded{NewPicture(header.width, header.height, plan.depth, plan.table), ImageFormat::kPng, {}, {}};
    {
        const LockedPicture picture(loaded.picture);
        if (plan.channels != 0) {
            DecodeApart(context.get(), plan, picture);
        } else {
            DecodeInPlace(context.get(), plan, picture, header.interlace_method != 0);
        }
    }
    Check(spng_decode_chunks(context.get())); // what follows the pixels
    loaded.metadata.alpha = plan.depth == 32;
    if (header.bit_depth == 16) {
        loaded.notes.emplace_back("its channels of 16 bits were rounded to 8");
    }
    TakeMetadata(context.get(), loaded.metadata);
    if (HasOddGamma(context.get(), loaded.metadata)) {
        loaded.notes.emplace_back("its gamma was left out");
    }
    ApplyOrientation(loaded, ExifOrientation(loaded.metadata.exif));
    return loaded;
}
