#include "photo_codec.h"

#include <gtest/gtest.h>

#include "files.h"
#include "image_file.h"
#include "mask.h"

namespace {

Bytes PixelsOf(const Picture& picture) {
    const LockedPicture locked(picture);
    return Bytes(locked.Bytes() + locked.PixelOffset(), locked.Bytes() + locked.Size());
}

Picture MakePicture(int bits, int width, int height, const std::vector<Bytes>& rowsFromBottom,
                    const std::vector<std::uint32_t>& masks = {}) {
    const Folder folder;
    const Bytes file = BuildBmp({.bits = bits, .width = width, .height = height, .masks = masks}, rowsFromBottom);
    return LoadPicture(folder.Store("a.bmp", file), 1000).picture;
}

Bytes SavedAs(const Picture& picture, const std::string& name, int quality = 90) {
    const Folder folder;
    SavePicture(picture, folder.Name(name), FormatForName(name), quality);
    return folder.Load(name);
}

Picture Reread(const Bytes& file) {
    PhotoReading reading = ReadPhoto(file.data(), file.size(), 1000);
    EXPECT_EQ(reading.error, "");
    return std::move(reading.picture);
}

TEST(Photo, PngKeepsColourAndAlpha) {
    const Bytes low{1, 2, 3, 4, 5, 6, 7, 8};
    const Bytes high{11, 12, 13, 0, 15, 16, 17, 255};
    const Picture back = Reread(SavedAs(MakePicture(32, 2, 2, {low, high}), "a.png"));
    EXPECT_EQ(LockedPicture(back).Header().biBitCount, 32);
    EXPECT_EQ(PixelsOf(back), (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 11, 12, 13, 0, 15, 16, 17, 255}));
}

TEST(Photo, PngOfUnusedFourthBytesHasNone) {
    const Picture back = Reread(SavedAs(MakePicture(32, 1, 2, {{1, 2, 3, 0}, {4, 5, 6, 0}}), "a.png"));
    EXPECT_EQ(LockedPicture(back).Header().biBitCount, 24);
    EXPECT_EQ(PixelsOf(back), (Bytes{1, 2, 3, 0, 4, 5, 6, 0}));
}

TEST(Photo, SixteenBitsAreWidenedForPng) {
    // Red 31, green 32 of 63, blue 1 of 31.
    const Picture picture = MakePicture(16, 1, 1, {{0x01, 0xFC, 0, 0}}, {0xF800, 0x07E0, 0x001F});
    EXPECT_EQ(PixelsOf(Reread(SavedAs(picture, "a.png"))), (Bytes{255 / 31, 32 * 255 / 63, 255, 0}));
}

TEST(Photo, UnknownChannelMasksCannotBecomePng) {
    const Picture picture = MakePicture(32, 1, 1, {{1, 2, 3, 4}}, {0xFF, 0xFF00, 0xFF0000});
    EXPECT_THROW(SavedAs(picture, "a.png"), Failure);
    EXPECT_EQ(SavedAs(picture, "a.bmp").size(), 14U + 40 + 12 + 4);
}

TEST(Photo, GreyStaysGrey) {
    const BYTE levels[] = {0, 100, 255, 7, 8, 9};
    const Picture back = Reread(SavedAs(PictureFromSamples(levels, 3, 2, 1), "a.PNG"));
    EXPECT_EQ(LockedPicture(back).Header().biBitCount, 8);
    EXPECT_EQ(PixelsOf(back), (Bytes{7, 8, 9, 0, 0, 100, 255, 0}));
    for (unsigned i = 0; i < 256; ++i) {
        EXPECT_EQ(LockedPicture(back).Table()[i].rgbGreen, i);
    }
}

TEST(Photo, JpegIsCloseAndItsQualityCounts) {
    std::vector<Bytes> rows(16, Bytes(16 * 3));
    for (std::size_t i = 0; i < 16 * 48; ++i) {
        rows[i / 48][i % 48] = static_cast<unsigned char>(i % 48 * 5);
    }
    const Picture picture = MakePicture(24, 16, 16, rows);
    const Bytes fine = SavedAs(picture, "a.jpg", 100);
    EXPECT_GT(fine.size(), SavedAs(picture, "a.jpeg", 10).size());
    const Bytes back = PixelsOf(Reread(fine));
    for (std::size_t i = 0; i < back.size(); ++i) {
        EXPECT_NEAR(back[i], rows[i / 48][i % 48], 12) << i;
    }
}

TEST(Photo, EveryTruncatedFileIsRefused) {
    const Picture picture = MakePicture(24, 3, 2, RowsFor({}));
    for (const char* name : {"a.png", "a.jpg"}) {
        const Bytes file = SavedAs(picture, name);
        // The very last bytes of a PNG are the checksum of its end marker.
        const std::size_t needed = file[0] == 0x89 ? file.size() - 4 : file.size();
        for (std::size_t size = 0; size < needed; ++size) {
            const Bytes cut = Slice(file, 0, size);
            ASSERT_FALSE(ReadPhoto(cut.data(), cut.size(), 1000).picture) << name << " cut to " << size;
        }
    }
}

TEST(Photo, TooManyPixelsAreRefusedBeforeDecoding) {
    Bytes file = SavedAs(MakePicture(24, 3, 2, RowsFor({})), "a.png");
    file[18] = 0x40; // 4 million pixels wide, which the data would not bear out
    EXPECT_NE(ReadPhoto(file.data(), file.size(), 1000).error.find("limit"), std::string::npos);
}

TEST(Mask, BeginsAtLuminance128) {
    // Blue, green, red: white, green alone (587 * 219 / 1000 = 128.6), green below (127.97), black.
    const Bytes row{255, 255, 255, 0, 219, 0, 0, 218, 0, 0, 0, 0};
    const Picture mask = MaskFromLuminance(MakePicture(24, 4, 1, {row}), "m");
    EXPECT_EQ(PixelsOf(mask), (Bytes{0xC0, 0, 0, 0}));
}

} // namespace
