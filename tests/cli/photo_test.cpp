#include "pictures/photo_codec.h"

#include <gtest/gtest.h>

#include "files.h"
#include "mask.h"
#include "pictures/image_file.h"

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

// The bytes are the first of two of each channel, in the order blue, green, red, alpha; rows stand bottom-up.
TEST(Photo, EveryFormOfPngIsRead) {
    struct Case {
        PngForm form;
        Bytes data; // each row begins with its filter
        Bytes pixels;
    };
    const Bytes table{1, 2, 3, 4, 5, 6};
    const Case cases[] = {
        {{.width = 1, .height = 1, .depth = 16}, {0, 10, 99, 20, 99, 30, 99}, {30, 20, 10, 0}},
        {{.width = 1, .height = 1, .depth = 16, .colour = 4}, {0, 10, 99, 20, 99}, {10, 10, 10, 20}},
        {{.width = 3, .height = 1, .depth = 2, .colour = 0}, {0, 0x1B}, {0, 85, 170, 0}},
        {{.width = 2, .height = 2, .depth = 8, .colour = 0, .interlaced = true},
         {0, 11, 0, 22, 0, 33, 44}, // the first pass, the sixth and the seventh
         {33, 44, 0, 0, 11, 22, 0, 0}},
        {{.width = 2, .height = 1, .depth = 1, .colour = 3, .table = table, .transparency = {7}},
         {0, 0x40},
         {3, 2, 1, 7, 6, 5, 4, 255}},
        {{.width = 1, .height = 1, .colour = 3, .table = table}, {0, 9}, {0, 0, 0, 0}}, // an entry that is not there
        {{.width = 1, .height = 1, .transparency = {0, 1, 0, 2, 0, 3}}, {0, 1, 2, 3}, {3, 2, 1, 0}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(PixelsOf(Reread(BuildPng(c.form, Stored(c.data)))), c.pixels)
            << c.form.colour << ", " << c.form.depth;
    }
}

std::vector<Bytes> SmallPhotos() {
    const Picture picture = MakePicture(24, 3, 2, RowsFor({}));
    const PngForm interlaced{.width = 5, .height = 5, .depth = 16, .colour = 6, .interlaced = true};
    const PngForm table{.depth = 4, .colour = 3, .table = {1, 2, 3, 4, 5, 6}, .transparency = {7, 8}};
    return {SavedAs(picture, "a.png"),
            SavedAs(picture, "a.jpg"),
            BuildPng(interlaced, Stored(Bytes(11 + 25 * 8))),
            BuildPng(table, Stored({0, 1, 0, 0x10})),
            BuildJpeg(17, 9, 1),
            BuildJpeg(17, 9, 3)};
}

// From memory that ends where the file ends, so that a sanitizer sees a read beyond it.
PhotoReading ReadExactly(const Bytes& file) {
    const Bytes exact(file.begin(), file.end());
    return ReadPhoto(exact.data(), exact.size(), 1000);
}

TEST(Photo, EveryTruncatedFileIsRefused) {
    for (const Bytes& file : SmallPhotos()) {
        EXPECT_TRUE(ReadExactly(file).picture);
        // The very last bytes of a PNG are the checksum of its end marker.
        const std::size_t needed = file[0] == 0x89 ? file.size() - 4 : file.size();
        for (std::size_t size = 0; size < needed; ++size) {
            const PhotoReading reading = ReadExactly(Slice(file, 0, size));
            ASSERT_FALSE(reading.picture) << file.size() << " bytes cut to " << size;
            ASSERT_NE(reading.error, "");
        }
    }
}

TEST(Photo, AnyChangedByteIsSurvived) {
    for (const Bytes& file : SmallPhotos()) {
        for (std::size_t at = 2; at < file.size(); ++at) {
            for (const unsigned change : {0x01U, 0x40U, 0x80U, 0x7FU, 0xFFU}) {
                Bytes changed = file;
                changed[at] = static_cast<unsigned char>(changed[at] ^ change);
                const PhotoReading reading = ReadExactly(changed);
                ASSERT_NE(static_cast<bool>(reading.picture), !reading.error.empty());
                if (reading.picture) {
                    const LockedPicture locked(reading.picture);
                    EXPECT_LE(locked.Width() * locked.Height(), 1000U);
                }
            }
        }
    }
}

// Files of a few bytes that ask for much memory or time.
TEST(Photo, WhatAFileAsksForIsBounded) {
    const Bytes few = Stored({0});
    const Bytes many = PackedZeroes(1 << 24);
    Bytes longChunk = BuildPng({}, few);
    Put32(longChunk, 33, 0xFFFFFF7F); // the length of the data, as the first byte is the highest
    struct Case {
        Bytes file;
        const char* words;
    };
    const Case cases[] = {
        {BuildPng({.width = 60000, .height = 60000}, few), "60000 x 60000 pixels are above the limit of 268435456"},
        {BuildPng({.width = 0xFFFFFFFF, .height = 0xFFFFFFFF}, few), "limit"},
        {BuildPng({.width = 0}, few), "size"},
        {BuildPng({.width = 16384, .height = 16384}, few), "too short"},
        {BuildPng({.width = 1, .height = 1}, many), "more in it"},
        {BuildPng({.width = 9, .height = 9, .depth = 1, .colour = 0, .interlaced = true}, many), "more in it"},
        {longChunk, "more in it"},
        {BuildJpeg(65500, 65500, 1), "limit"},
        {BuildJpeg(16000, 16000, 3), "too short"},
        {BuildJpeg(0, 8, 1), "header"},
        {BuildJpeg(8, 8, 101), "scans"},
    };
    for (const Case& c : cases) {
        const PhotoReading reading = ReadPhoto(c.file.data(), c.file.size(), 1 << 28);
        EXPECT_FALSE(reading.picture) << c.words;
        EXPECT_NE(reading.error.find(c.words), std::string::npos) << reading.error;
    }
}

TEST(Mask, BeginsAtLuminance128) {
    // Blue, green, red: white, green alone (587 * 219 / 1000 = 128.6), green below (127.97), black.
    const Bytes row{255, 255, 255, 0, 219, 0, 0, 218, 0, 0, 0, 0};
    const Picture mask = AsMask(MakePicture(24, 4, 1, {row}), "m");
    EXPECT_EQ(PixelsOf(mask), (Bytes{0xC0, 0, 0, 0}));
}

} // namespace
