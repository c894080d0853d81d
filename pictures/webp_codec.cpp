// WebP files.
#include <cstring>
#include <memory>
#include <new>

#include <webp/decode.h>
#include <webp/demux.h>
#include <webp/encode.h>
#include <webp/mux.h>

#include "pictures/codec.h"
#include "pictures/metadata.h"
#include "pictures/picture_rows.h"

namespace {

using Demuxer = std::unique_ptr<WebPDemuxer, decltype(&WebPDemuxDelete)>;
using Mux = std::unique_ptr<WebPMux, decltype(&WebPMuxDelete)>;

std::vector<BYTE> ChunkOf(const WebPDemuxer* demuxer, const char* name) {
    WebPChunkIterator chunk{};
    std::vector<BYTE> bytes;
    if (WebPDemuxGetChunk(demuxer, name, 1, &chunk) != 0) {
        bytes.assign(chunk.chunk.bytes, chunk.chunk.bytes + chunk.chunk.size);
    }
    WebPDemuxReleaseChunkIterator(&chunk);
    return bytes;
}

void TakeMetadata(ByteView file, Metadata& metadata) {
    const WebPData data{file.data(), file.size()};
    const Demuxer demuxer(WebPDemux(&data), WebPDemuxDelete);
    Require(demuxer != nullptr, "it is damaged or cut off");
    metadata.profile = ChunkOf(demuxer.get(), "ICCP");
    metadata.exif = ChunkOf(demuxer.get(), "EXIF");
    if (HasExifPrefix(metadata.exif)) {
        metadata.exif.erase(metadata.exif.begin(), metadata.exif.begin() + kExifPrefix.size());
    }
}

void Decode(ByteView file, WebPDecoderConfig& config, const LockedPicture& picture) {
    config.options.flip = 1; // the lowest row comes first
    config.output.colorspace = config.input.has_alpha != 0 ? MODE_BGRA : MODE_BGR;
    config.output.is_external_memory = 1;
    config.output.u.RGBA.rgba = picture.Bytes() + picture.PixelOffset();
    config.output.u.RGBA.stride = static_cast<int>(picture.Stride());
    config.output.u.RGBA.size = picture.Stride() * picture.Height();
    const VP8StatusCode result = WebPDecode(file.data(), file.size(), &config);
    if (result == VP8_STATUS_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    Require(result == VP8_STATUS_OK, "it is damaged or cut off");
}

LoadedPicture ReadWebp(ByteView file, const ReadOptions& options) {
    WebPDecoderConfig config{};
    Require(WebPInitDecoderConfig(&config) != 0, "another version of libwebp is installed");
    Require(WebPGetFeatures(file.data(), file.size(), &config.input) == VP8_STATUS_OK,
            "its header is damaged or cut off");
    Require(config.input.has_animation == 0, "moving pictures are not supported");
    const auto width = static_cast<std::uint64_t>(config.input.width);
    const auto height = static_cast<std::uint64_t>(config.input.height);
    CheckSize(width, height, file.size(), 0, options);
    LoadedPicture loaded{{}, ImageFormat::kWebp, {}, {}};
    TakeMetadata(file, loaded.metadata);
    loaded.metadata.alpha = config.input.has_alpha != 0;
    loaded.picture = NewPicture(width, height, loaded.metadata.alpha ? 32 : 24);
    Decode(file, config, LockedPicture(loaded.picture));
    ApplyOrientation(loaded, ExifOrientation(loaded.metadata.exif));
    return loaded;
}

struct EncoderPicture : WebPPicture {
    WebPMemoryWriter bytes{};

    EncoderPicture(int pictureWidth, int pictureHeight) : WebPPicture() {
        Require(WebPPictureInit(this) != 0, "another version of libwebp is installed");
        WebPMemoryWriterInit(&bytes);
        width = pictureWidth;
        height = pictureHeight;
        writer = WebPMemoryWrite;
        custom_ptr = &bytes;
    }
    EncoderPicture(const EncoderPicture&) = delete;
    EncoderPicture& operator=(const EncoderPicture&) = delete;
    ~EncoderPicture() {
        WebPPictureFree(this);
        WebPMemoryWriterClear(&bytes);
    }
};

void FillPixels(EncoderPicture& target, PictureRows& rows) {
    target.use_argb = 1;
    if (WebPPictureAlloc(&target) == 0) {
        throw std::bad_alloc();
    }
    for (std::size_t y = 0; y < rows.Height(); ++y) {
        const BYTE* from = rows.Row(y);
        std::uint32_t* to = target.argb + y * static_cast<std::size_t>(target.argb_stride);
        const bool grey = rows.Kind() == PictureRows::Form::kGrey;
        for (std::size_t x = 0; x < rows.Width(); ++x, from += rows.Channels()) {
            const unsigned alpha = rows.Kind() == PictureRows::Form::kColourAndAlpha ? from[3] : 255;
            *to++ = alpha << 24 | unsigned{from[grey ? 0 : 2]} << 16 | unsigned{from[grey ? 0 : 1]} << 8 | from[0];
        }
    }
}

// The bytes with what stands beside the pixels.
void WriteWithMetadata(const EncoderPicture& encoded, const Metadata& metadata, bool profile, const Sink& sink) {
    const Mux mux(WebPMuxNew(), WebPMuxDelete);
    const WebPData image{encoded.bytes.mem, encoded.bytes.size};
    const WebPData icc{metadata.profile.data(), metadata.profile.size()};
    const WebPData exif{metadata.exif.data(), metadata.exif.size()};
    WebPData whole{};
    const bool done = mux && WebPMuxSetImage(mux.get(), &image, 0) == WEBP_MUX_OK &&
                      (!profile || WebPMuxSetChunk(mux.get(), "ICCP", &icc, 0) == WEBP_MUX_OK) &&
                      (exif.size == 0 || WebPMuxSetChunk(mux.get(), "EXIF", &exif, 0) == WEBP_MUX_OK) &&
                      WebPMuxAssemble(mux.get(), &whole) == WEBP_MUX_OK;
    const std::unique_ptr<WebPData, decltype(&WebPDataClear)> owner(&whole, WebPDataClear);
    if (!done) {
        throw std::bad_alloc();
    }
    sink(whole.bytes, whole.size);
}

void WriteWebp(const Picture& picture, const Metadata& metadata, const WriteOptions& options, const Sink& sink) {
    PictureRows rows(picture, metadata.alpha);
    Require(rows.Width() <= WEBP_MAX_DIMENSION && rows.Height() <= WEBP_MAX_DIMENSION,
            "WebP takes no more than 16383 pixels a side");
    const bool hasTable = LockedPicture(picture).Header().biBitCount <= 8 && rows.Kind() != PictureRows::Form::kGrey;
    WebPConfig config{};
    Require(WebPConfigPreset(&config, WEBP_PRESET_DEFAULT, static_cast<float>(options.quality)) != 0,
            "another version of libwebp is installed");
    config.lossless = options.lossless || hasTable ? 1 : 0;
    config.exact = 1; // colours stay where nothing is seen of them
    EncoderPicture target(static_cast<int>(rows.Width()), static_cast<int>(rows.Height()));
    FillPixels(target, rows);
    if (WebPEncode(&config, &target) == 0) {
        if (target.error_code == VP8_ENC_ERROR_OUT_OF_MEMORY ||
            target.error_code == VP8_ENC_ERROR_BITSTREAM_OUT_OF_MEMORY) {
            throw std::bad_alloc();
        }
        throw Refusal("libwebp gave up with error " + std::to_string(target.error_code));
    }
    const bool profile = IsColourProfile(metadata.profile);
    if (profile || !metadata.exif.empty()) {
        WriteWithMetadata(target, metadata, profile, sink);
    } else {
        sink(target.bytes.mem, target.bytes.size);
    }
}

bool IsWebp(ByteView file) {
    return file.size() >= 12 && std::memcmp(file.data(), "RIFF", 4) == 0 &&
           std::memcmp(file.data() + 8, "WEBP", 4) == 0;
}

std::string Library() {
    const auto version = static_cast<unsigned>(WebPGetEncoderVersion());
    return "libwebp " + std::to_string(version >> 16) + "." + std::to_string(version >> 8 & 255) + "." +
           std::to_string(version & 255);
}

constexpr const char* kEndings[] = {"webp"};

} // namespace

const Codec kWebpCodec{ImageFormat::kWebp, "WebP",    kEndings, kHoldsAlpha | kHoldsProfile | kHoldsExif, IsWebp,
                       ReadWebp,           WriteWebp, Library};
