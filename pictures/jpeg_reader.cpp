// Reading of JPEG files.
#include "pictures/jpeg_codec.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <jerror.h>

#include "pictures/metadata.h"

namespace {

// A block of 8 x 8 samples takes a bit at least, and there are no fewer than one block for 128 pixels.
constexpr std::uint64_t kMostPixelsInAByte = 8 * 128;

// Every scan goes over the whole picture; encoders make about ten.
constexpr int kMostScans = 100;

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kProfileMarker = JPEG_APP0 + 2;

struct Decoder {
    JpegErrors errors;
    jpeg_progress_mgr progress{};
    jpeg_decompress_struct info{};

    Decoder() {
        info.err = errors.Watch();
        errors.Try([this] { jpeg_create_decompress(&info); });
    }
    Decoder(const Decoder&) = delete;
    Decoder& operator=(const Decoder&) = delete;
    ~Decoder() {
        jpeg_destroy_decompress(&info);
    }
};

void LimitScans(j_common_ptr info) {
    const auto* const decoder = reinterpret_cast<j_decompress_ptr>(info);
    if (decoder->input_scan_number > kMostScans) {
        ERREXIT(info, JERR_BAD_PROGRESSION);
    }
}

// The library's own memory: coefficients of all components of progressive pictures, else some rows.
long LibraryMemoryFor(const jpeg_decompress_struct& info) {
    constexpr std::uint64_t kTables = 64 << 20;
    const std::uint64_t pixels = std::uint64_t{info.image_width + 64} * (info.image_height + 64);
    const std::uint64_t whole = pixels * 2 * static_cast<unsigned>(info.num_components) + kTables;
    return static_cast<long>(std::min<std::uint64_t>(whole, LONG_MAX));
}

void ReadHeader(Decoder& decoder, ByteView file) {
    decoder.errors.Try([&] {
        jpeg_decompress_struct& info = decoder.info;
        jpeg_save_markers(&info, kExifMarker, 0xFFFF);
        jpeg_save_markers(&info, kProfileMarker, 0xFFFF);
        jpeg_mem_src(&info, file.data(), static_cast<unsigned long>(file.size()));
        jpeg_read_header(&info, TRUE);
    });
}

void TakeMetadata(Decoder& decoder, Metadata& metadata) {
    for (auto* marker = decoder.info.marker_list; marker != nullptr; marker = marker->next) {
        const ByteView data(marker->data, marker->data_length);
        if (marker->marker == kExifMarker && HasExifPrefix(data) && metadata.exif.empty()) {
            metadata.exif.assign(data.begin() + kExifPrefix.size(), data.end());
        }
    }
    JOCTET* bytes = nullptr;
    unsigned size = 0;
    decoder.errors.Try([&] { jpeg_read_icc_profile(&decoder.info, &bytes, &size); });
    const std::unique_ptr<JOCTET, decltype(&std::free)> profile(bytes, std::free);
    if (bytes != nullptr) {
        metadata.profile.assign(bytes, bytes + size);
    }
    const double dotsInInch = decoder.info.density_unit == 1 ? 1 : decoder.info.density_unit == 2 ? 2.54 : 0;
    metadata.xPixelsPerMetre = PerMetre(decoder.info.X_density * dotsInInch);
    metadata.yPixelsPerMetre = PerMetre(decoder.info.Y_density * dotsInInch);
}

// Inks that a file of four components stores as what they leave of the light. Each row has room for its four bytes a
// pixel, and becomes three.
void ColourFromInks(BYTE* row, const BYTE* inks, std::size_t width) {
    for (std::size_t x = 0; x < width; ++x, row += 3, inks += 4) {
        for (std::size_t i = 0; i < 3; ++i) {
            row[2 - i] = static_cast<BYTE>((inks[i] * inks[3] + 127) / 255);
        }
    }
}

void Decode(Decoder& decoder, const LockedPicture& picture) {
    jpeg_decompress_struct& info = decoder.info;
    const bool inks = info.out_color_space == JCS_CMYK;
    std::vector<BYTE> inkRow(inks ? picture.Width() * 4 : 0);
    decoder.progress.progress_monitor = LimitScans;
    info.progress = &decoder.progress;
    info.mem->max_memory_to_use = LibraryMemoryFor(info);
    decoder.errors.Try([&] {
        jpeg_start_decompress(&info);
        while (info.output_scanline < info.output_height) {
            BYTE* const row = picture.RowFromTop(info.output_scanline);
            JSAMPROW to = inks ? inkRow.data() : row;
            jpeg_read_scanlines(&info, &to, 1);
            if (inks) {
                ColourFromInks(row, inkRow.data(), picture.Width());
            }
        }
        jpeg_finish_decompress(&info);
    });
}

} // namespace

LoadedPicture ReadJpeg(ByteView file, const ReadOptions& options) {
    Decoder decoder;
    jpeg_decompress_struct& info = decoder.info;
    ReadHeader(decoder, file);
    CheckSize(info.image_width, info.image_height, file.size(), info.arith_code != 0 ? 0 : kMostPixelsInAByte, options);
    Require(info.num_components == 1 || info.num_components == 3 || info.num_components == 4,
            "it has " + std::to_string(info.num_components) + " components");
    LoadedPicture loaded{{}, ImageFormat::kJpeg, {}, {}};
    TakeMetadata(decoder, loaded.metadata);
    const bool grey = info.num_components == 1;
    info.out_color_space = grey ? JCS_GRAYSCALE : info.num_components == 3 ? JCS_EXT_BGR : JCS_CMYK;
    if (info.out_color_space == JCS_CMYK) {
        loaded.notes.emplace_back("its four inks became red, green and blue by a simple rule, without its profile");
        loaded.metadata.profile.clear();
    }
    loaded.picture = grey ? NewPicture(info.image_width, info.image_height, 8, GreyRamp(8))
                          : NewPicture(info.image_width, info.image_height, 24);
    Decode(decoder, LockedPicture(loaded.picture));
    ApplyOrientation(loaded, ExifOrientation(loaded.metadata.exif));
    return loaded;
}
