#include "geometry/blending.h"

namespace qv8 {
namespace {

struct Channels {
    BYTE blue[kPlaces];
    BYTE green[kPlaces];
    BYTE red[kPlaces];

    PlanarRow Row() {
        return {blue, green, red};
    }
};

void CopyChannels(const Blending& blending, const TurnedPicture& picture, const int* columns, const int* rows,
                  int count, Channels& channels) {
    BYTE pixels[kPlaces * 4];
    picture.unit.gather(picture.source, columns, rows, count, pixels);
    blending.format.Decode(pixels, channels.Row(), count);
}

// The same where places may be outside: those count as background.
void CopyChannelsWithin(const Blending& blending, const TurnedPicture& picture, const int* columns, const int* rows,
                        int count, Channels& channels) {
    ClampedPlaces places;
    ClampPlaces(picture.source, columns, rows, count, places);
    CopyChannels(blending, picture, places.columns, places.rows, count, channels);
    for (int i = 0; i < count; ++i) {
        if (places.wereInside[i] == 0) {
            channels.blue[i] = blending.background.rgbBlue;
            channels.green[i] = blending.background.rgbGreen;
            channels.red[i] = blending.background.rgbRed;
        }
    }
}

} // namespace

Blending BlendingOf(const TurnedPicture& picture, const RGBQUAD& background) {
    Blending blending = {};
    blending.format = PixelFormatOf(picture.source);
    blending.background = background;
    if (blending.format.IsGrey()) {
        blending.background.rgbBlue = blending.format.ramp.levels[picture.background.bytes[0]];
    }
    return blending;
}

void BlendPixels(const Blending& blending, const TurnedPicture& picture, const Places& places, int count,
                 BYTE* result) {
    const auto copyNeighbours =
        AreInside(picture.source, places.nextColumns, places.nextRows, count) ? CopyChannels : CopyChannelsWithin;
    Channels pixel;
    Channels beside;
    Channels above;
    Channels diagonal;
    CopyChannels(blending, picture, places.columns, places.rows, count, pixel);
    copyNeighbours(blending, picture, places.nextColumns, places.rows, count, beside);
    copyNeighbours(blending, picture, places.columns, places.nextRows, count, above);
    copyNeighbours(blending, picture, places.nextColumns, places.nextRows, count, diagonal);
    const auto blend = TheRotationKernels().blend;
    blend(places, pixel.blue, beside.blue, above.blue, diagonal.blue, count, pixel.blue);
    if (!blending.format.IsGrey()) {
        blend(places, pixel.green, beside.green, above.green, diagonal.green, count, pixel.green);
        blend(places, pixel.red, beside.red, above.red, diagonal.red, count, pixel.red);
    }
    blending.format.Encode(pixel.Row(), result, count);
}

bool AreInside(const DibView& picture, const int* columns, const int* rows, int count) {
    unsigned outside = 0;
    for (int i = 0; i < count; ++i) { // without a branch, so that it becomes vectors
        outside |= static_cast<unsigned>(static_cast<unsigned>(columns[i]) >= static_cast<unsigned>(picture.width));
        outside |= static_cast<unsigned>(static_cast<unsigned>(rows[i]) >= static_cast<unsigned>(picture.height));
    }
    return outside == 0;
}

void ClampPlaces(const DibView& picture, const int* columns, const int* rows, int count, ClampedPlaces& places) {
    for (int i = 0; i < count; ++i) {
        places.columns[i] = std::clamp(columns[i], 0, picture.width - 1);
        places.rows[i] = std::clamp(rows[i], 0, picture.height - 1);
        places.wereInside[i] = places.columns[i] == columns[i] && places.rows[i] == rows[i] ? 1 : 0;
    }
}

Span PlacesWithin(const DibView& picture, const Places& places, int count) {
    const auto isWithin = [&](int i) {
        const auto width = static_cast<unsigned>(picture.width);
        const auto rows = static_cast<unsigned>(picture.height - 1);
        return static_cast<unsigned>(places.columns[i]) < width &&
               static_cast<unsigned>(places.nextColumns[i]) < width && static_cast<unsigned>(places.rows[i]) < rows &&
               static_cast<unsigned>(places.nextRows[i]) < rows;
    };
    // Neither coordinate turns back along the line, so those within follow one another.
    Span within = {0, count};
    while (within.begin < within.end && !isWithin(within.begin)) {
        ++within.begin;
    }
    while (within.begin < within.end && !isWithin(within.end - 1)) {
        --within.end;
    }
    return within;
}

} // namespace qv8
