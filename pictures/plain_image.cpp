#include "pictures/plain_image.h"

#include <algorithm>

#include "pictures/codec.h"
#include "pictures/picture_rows.h"

PlainImage PlainFromPicture(const Picture& picture, ExitCode code, const std::string& subject) {
    try {
        PictureRows rows(picture, false);
        PlainImage image{rows.Width(), rows.Height(), rows.Channels(), {}};
        image.samples.reserve(image.width * image.height * image.channels);
        for (std::size_t y = 0; y < image.height; ++y) {
            BYTE* const row = rows.Row(y);
            if (image.channels != 1) {
                SwapRedAndBlue(row, image.width, image.channels);
            }
            image.samples.insert(image.samples.end(), row, row + image.width * image.channels);
        }
        return image;
    } catch (const Refusal& refusal) {
        throw Failure(code, subject + refusal.what());
    }
}

Picture PictureFromSamples(const BYTE* samples, std::size_t width, std::size_t height, std::size_t channels) {
    Picture picture = channels == 1 ? NewPicture(width, height, 8, GreyRamp(8))
                                    : NewPicture(width, height, static_cast<unsigned>(8 * channels));
    const LockedPicture locked(picture);
    for (std::size_t y = 0; y < height; ++y) {
        BYTE* const row = locked.RowFromTop(y);
        std::copy_n(samples + y * width * channels, width * channels, row);
        if (channels != 1) {
            SwapRedAndBlue(row, width, channels);
        }
    }
    return picture;
}
