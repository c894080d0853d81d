// Writing of JPEG files, and the format as a whole.
#include "pictures/jpeg_codec.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>

#include <jerror.h>

#include "pictures/metadata.h"
#include "pictures/picture_rows.h"

namespace {

constexpr int kFullColourQuality = 90; // from here on colours are not halved
constexpr std::size_t kLargestMarker = 65533;

struct Encoder {
    JpegErrors errors;
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_compress_struct info{};

    Encoder() {
        info.err = errors.Watch();
        errors.Try([this] {
            jpeg_create_compress(&info);
            jpeg_mem_dest(&info, &bytes, &size);
        });
    }
    Encoder(const Encoder&) = delete;
    Encoder& operator=(const Encoder&) = delete;
    ~Encoder() {
        jpeg_destroy_compress(&info);
        std::free(bytes); // NOLINT(cppcoreguidelines-no-malloc): the library took it
    }
};

J_COLOR_SPACE InputOf(PictureRows::Form form) {
    return form == PictureRows::Form::kGrey     ? JCS_GRAYSCALE
           : form == PictureRows::Form::kColour ? JCS_EXT_BGR
                                                : JCS_EXT_BGRX;
}

void Configure(jpeg_compress_struct& info, const PictureRows& rows, const WriteOptions& options) {
    info.image_width = static_cast<JDIMENSION>(rows.Width());
    info.image_height = static_cast<JDIMENSION>(rows.Height());
    info.input_components = static_cast<int>(rows.Channels());
    info.in_color_space = InputOf(rows.Kind());
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, options.quality, TRUE);
    if (options.quality >= kFullColourQuality) {
        info.comp_info[0].h_samp_factor = 1;
        info.comp_info[0].v_samp_factor = 1;
    }
    info.optimize_coding = TRUE;
    if (options.progressive) {
        jpeg_simple_progression(&info);
    }
}

void PutResolution(jpeg_compress_struct& info, const Metadata& metadata) {
    const double x = std::round(DotsPerInch(metadata.xPixelsPerMetre));
    const double y = std::round(DotsPerInch(metadata.yPixelsPerMetre));
    if (x >= 1 && y >= 1 && x <= 0xFFFF && y <= 0xFFFF) {
        info.density_unit = 1;
        info.X_density = static_cast<UINT16>(x);
        info.Y_density = static_cast<UINT16>(y);
    }
}

void PutMarkers(jpeg_compress_struct& info, const Metadata& metadata, const std::vector<BYTE>& exif) {
    if (!exif.empty() && exif.size() <= kLargestMarker) {
        jpeg_write_marker(&info, JPEG_APP0 + 1, exif.data(), static_cast<unsigned>(exif.size()));
    }
    if (info.num_components == 1 ? IsGreyProfile(metadata.profile) : IsColourProfile(metadata.profile)) {
        jpeg_write_icc_profile(&info, metadata.profile.data(), static_cast<unsigned>(metadata.profile.size()));
    }
}

void WriteJpeg(const Picture& picture, const Metadata& metadata, const WriteOptions& options, const Sink& sink) {
    PictureRows rows(picture, false);
    Require(rows.Width() <= JPEG_MAX_DIMENSION && rows.Height() <= JPEG_MAX_DIMENSION,
            "JPEG takes no more than 65500 pixels a side");
    std::vector<BYTE> exif(metadata.exif.empty() ? 0 : kExifPrefix.size() + metadata.exif.size());
    if (!exif.empty()) {
        std::copy(metadata.exif.begin(), metadata.exif.end(),
                  std::copy(kExifPrefix.begin(), kExifPrefix.end(), exif.begin()));
    }
    Encoder encoder;
    jpeg_compress_struct& info = encoder.info;
    encoder.errors.Try([&] {
        Configure(info, rows, options);
        PutResolution(info, metadata);
        jpeg_start_compress(&info, TRUE);
        PutMarkers(info, metadata, exif);
        while (info.next_scanline < info.image_height) {
            JSAMPROW row = rows.Row(info.next_scanline);
            jpeg_write_scanlines(&info, &row, 1);
        }
        jpeg_finish_compress(&info);
    });
    sink(encoder.bytes, encoder.size);
}

bool IsJpeg(ByteView file) {
    return file.size() >= 3 && file[0] == 0xFF && file[1] == 0xD8 && file[2] == 0xFF;
}

std::string Library() {
#define QV8_TEXT(x) #x
#define QV8_TEXT_OF(x) QV8_TEXT(x)
    return "libjpeg-turbo " QV8_TEXT_OF(LIBJPEG_TURBO_VERSION);
}

constexpr const char* kEndings[] = {"jpg", "jpeg", "jpe", "jfif"};

[[noreturn]] void Jump(j_common_ptr info) {
    auto* const errors = reinterpret_cast<JpegErrors*>(info->err);
    info->err->format_message(info, errors->message);
    std::longjmp(errors->jump, 1); // NOLINT(cert-err52-cpp): the library knows no other way
}

void OnMessage(j_common_ptr info, int level) {
    switch (level < 0 ? info->err->msg_code : 0) {
    case JWRN_ARITH_BAD_CODE:
    case JWRN_BOGUS_PROGRESSION:
    case JWRN_HIT_MARKER:
    case JWRN_HUFF_BAD_CODE:
    case JWRN_JPEG_EOF:
    case JWRN_MUST_RESYNC:
    case JWRN_NOT_SEQUENTIAL:
        Jump(info);
    default:
        break;
    }
}

} // namespace

jpeg_error_mgr* JpegErrors::Watch() {
    jpeg_std_error(&base);
    base.error_exit = Jump;
    base.emit_message = OnMessage;
    return &base;
}

void JpegErrors::Fail() const {
    if (base.msg_code == JERR_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    throw Refusal(base.msg_code == JERR_NO_BACKING_STORE || base.msg_code == JERR_BAD_PROGRESSION
                      ? "there is more in it than its header says"
                      : message);
}

const Codec kJpegCodec{ImageFormat::kJpeg, "JPEG",    kEndings, kHoldsProfile | kHoldsExif | kHoldsResolution, IsJpeg,
                       ReadJpeg,           WriteJpeg, Library};
