#include "pixels/pixel_format.h"

#include <cstring>

#include "pixels/planar_chunks.h"

namespace qv8 {
namespace {

GreyRamp GreyRampOf(const DibView& picture) {
    GreyRamp ramp = {};
    for (int i = 0; i < picture.NameableEntries(); ++i) {
        const BYTE level = picture.palette[i].rgbBlue;
        ramp.levels[i] = level;
        ramp.indices[level] = static_cast<BYTE>(i);
    }
    return ramp;
}

void Map(const BYTE (&table)[256], const BYTE* source, BYTE* result, int count) {
    for (int i = 0; i < count; ++i) {
        result[i] = table[source[i]];
    }
}

} // namespace

void PixelFormat::Decode(const BYTE* source, const PlanarRow& row, int count) const {
    if (IsGrey()) {
        Map(ramp.levels, source, row.blue, count);
    } else {
        codec.decode(source, row, count);
    }
}

void PixelFormat::Encode(const PlanarRow& row, BYTE* result, int count) const {
    if (IsGrey()) {
        Map(ramp.indices, row.blue, result, count);
    } else {
        codec.encode(row, result, count);
    }
}

PixelFormat PixelFormatOf(const PixelLayout& layout) {
    PixelFormat format;
    format.layout = &layout;
    format.bytesPerPixel = layout.Bytes();
    format.channels = 3;
    format.codec = ThePixelKernels().*layout.codec;
    return format;
}

PixelFormat PixelFormatOf(const DibView& picture) {
    if (!picture.IsPaletted()) {
        return PixelFormatOf(*picture.layout);
    }
    PixelFormat format;
    format.layout = picture.layout;
    format.bytesPerPixel = picture.layout->Bytes();
    if (IsGreyRampPalette(picture)) {
        format.channels = 1;
        format.ramp = GreyRampOf(picture);
    }
    return format;
}

bool CanBlend(const DibView& picture) {
    return !picture.IsPaletted() || IsGreyRampPalette(picture);
}

void CopyUnused(const PixelFormat& format, const BYTE* source, BYTE* result, int count) {
    if (format.layout->unusedBytes != 0) {
        std::memcpy(result, source, format.BytesOf(count));
    }
}

void ClearBeforeEncoding(const PixelFormat& format, BYTE* result, int count) {
    if (format.layout->unusedBytes != 0) {
        std::memset(result, 0, format.BytesOf(count));
    }
}

void ClearUnused(const PixelLayout& layout, BYTE* pixels, int count) {
    if (layout.unusedBytes != 0) {
        (ThePixelKernels().*layout.codec).clearUnused(pixels, count);
    }
}

void ReduceToChannels(const PixelLayout& layout, BYTE* pixels, int count) {
    if (layout.isBgr || layout.IsIndexed()) {
        ClearUnused(layout, pixels, count);
        return;
    }
    const PixelCodec& codec = ThePixelKernels().*layout.codec;
    const auto bytes = static_cast<std::size_t>(layout.Bytes());
    PlanarChunk chunk;
    ForEachChunk(count, [&](int start, int part) {
        BYTE* const place = pixels + static_cast<std::size_t>(start) * bytes;
        codec.decode(place, chunk.Row(), part);
        codec.encode(chunk.Row(), place, part);
        ClearUnused(layout, place, part);
    });
}

} // namespace qv8
