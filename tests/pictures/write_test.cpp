#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "pictures/codec.h"
#include "pictures/failure.h"
#include "recorded.h"

namespace {

constexpr ImageFormat kLossless[] = {ImageFormat::kBmp, ImageFormat::kPng, ImageFormat::kTiff, ImageFormat::kWebp};

WriteOptions For(ImageFormat format) {
    WriteOptions options;
    options.format = format;
    options.lossless = true;
    return options;
}

LoadedPicture Again(const LoadedPicture& loaded, const WriteOptions& options) {
    return DecodePicture(EncodePicture(loaded.picture, loaded.metadata, options, "file"), FormatName(options.format));
}

unsigned DepthOf(const LoadedPicture& loaded) {
    return LockedPicture(loaded.picture).Header().biBitCount;
}

// Every picture that can be read, in every format without loss; colour tables stay what they are where there are any.
TEST(WritePicture, NothingIsLost) {
    for (const Recorded& recorded : AllRecorded()) {
        for (const ImageFormat format : kLossless) {
            if (!recorded.refusal.empty()) {
                continue;
            }
            SCOPED_TRACE(recorded.name + " as " + FormatName(format));
            const LoadedPicture before = ReadRecorded(recorded.name);
            LoadedPicture after = Again(before, For(format));
            after.metadata.alpha = before.metadata.alpha; // which BMP does not know
            EXPECT_EQ(HashOf(after), HashOf(before));
            if (format != ImageFormat::kWebp) {
                const bool has16 = DepthOf(before) != 16 || format == ImageFormat::kBmp; // others take 24
                EXPECT_EQ(DepthOf(after), has16 ? DepthOf(before) : 24);
                EXPECT_EQ(after.metadata.xPixelsPerMetre, before.metadata.xPixelsPerMetre);
                EXPECT_EQ(after.metadata.yPixelsPerMetre, before.metadata.yPixelsPerMetre);
            }
            if (format != ImageFormat::kBmp) {
                EXPECT_EQ(after.metadata.profile, before.metadata.profile);
            }
            if (format == ImageFormat::kPng || format == ImageFormat::kWebp) {
                EXPECT_EQ(after.metadata.exif, before.metadata.exif);
            }
        }
    }
}

TEST(WritePicture, BmpStaysTheSameFile) {
    for (const char* const name : {"plain24.bmp", "short-table.bmp", "masks16.bmp"}) {
        const LoadedPicture loaded = ReadRecorded(name);
        EXPECT_EQ(EncodePicture(loaded.picture, loaded.metadata, For(ImageFormat::kBmp), name), FileOf(name)) << name;
    }
}

TEST(WritePicture, ClearPicturesStayClear) {
    for (const ImageFormat format : {ImageFormat::kPng, ImageFormat::kTiff, ImageFormat::kWebp}) {
        const LoadedPicture after = Again(ReadRecorded("clear.png"), For(format));
        EXPECT_TRUE(after.metadata.alpha) << FormatName(format);
        EXPECT_EQ(HashOf(after), HashOf(ReadRecorded("clear.png"))) << FormatName(format);
    }
}

TEST(WritePicture, ColourTablesMakeSmallFiles) {
    const LoadedPicture colours = ReadRecorded("colour8.png");
    for (const ImageFormat format : {ImageFormat::kPng, ImageFormat::kTiff}) {
        const auto size = [&](const LoadedPicture& picture) {
            return EncodePicture(picture.picture, picture.metadata, For(format), "file").size();
        };
        EXPECT_LT(size(ReadRecorded("table1.png")), size(ReadRecorded("table2.png")));
        EXPECT_LT(size(ReadRecorded("table2.png")), size(ReadRecorded("table4.png")));
        EXPECT_LT(size(ReadRecorded("table4.png")), size(colours));
    }
}

// How hard a PNG is packed depends on a sample of its rows.
TEST(WritePicture, PngsOfAllKindsAndHeightsAreWhole) {
    for (const unsigned noise : {0U, 7U, 255U}) {
        for (const unsigned height : {1U, 8U, 127U, 128U, 129U, 1500U}) {
            LoadedPicture before{NewPicture(11, height, 24), ImageFormat::kPng, {}, {}};
            const LockedPicture to(before.picture);
            std::minstd_rand random(height);
            for (std::size_t i = 0; i < 33 * height; ++i) {
                to.RowFromTop(i / 33)[i % 33] = static_cast<BYTE>(i + (random() & noise));
            }
            EXPECT_EQ(HashOf(Again(before, For(ImageFormat::kPng))), HashOf(before)) << noise << " " << height;
        }
    }
}

double PsnrAsJpeg(int quality, bool progressive, std::size_t& size) {
    const LoadedPicture before = ReadRecorded("colour8.png");
    WriteOptions options = For(ImageFormat::kJpeg);
    options.quality = quality;
    options.progressive = progressive;
    const std::vector<BYTE> file = EncodePicture(before.picture, before.metadata, options, "file");
    size = file.size();
    const LoadedPicture after = DecodePicture(file, "file");
    const LockedPicture a(before.picture);
    const LockedPicture b(after.picture);
    double sum = 0;
    for (std::size_t y = 0; y < a.Height(); ++y) {
        for (std::size_t x = 0; x < 3 * a.Width(); ++x) {
            sum += std::pow(a.RowFromTop(y)[x] - b.RowFromTop(y)[x], 2);
        }
    }
    return 10 * std::log10(255 * 255 * 3.0 * 21 * 13 / sum);
}

// The picture is noise in every channel, which halved colours cannot show.
TEST(WritePicture, JpegKeepsColoursFromQuality90On) {
    std::size_t size = 0;
    std::size_t progressive = 0;
    EXPECT_LT(PsnrAsJpeg(89, false, size), 20);
    EXPECT_GT(PsnrAsJpeg(90, false, size), 30);
    EXPECT_GT(PsnrAsJpeg(90, true, progressive), 30);
    EXPECT_NE(size, progressive);
}

TEST(WritePicture, StripsWhatIsAskedFor) {
    for (const ImageFormat format :
         {ImageFormat::kBmp, ImageFormat::kPng, ImageFormat::kJpeg, ImageFormat::kTiff, ImageFormat::kWebp}) {
        WriteOptions options = For(format);
        options.strip = true;
        const LoadedPicture after = Again(ReadRecorded("whole.jpg"), options);
        EXPECT_TRUE(after.metadata.profile.empty() && after.metadata.exif.empty()) << FormatName(format);
        EXPECT_EQ(after.metadata.xPixelsPerMetre, 0U) << FormatName(format);
    }
    const LoadedPicture kept = Again(ReadRecorded("whole.jpg"), For(ImageFormat::kJpeg));
    EXPECT_EQ(kept.metadata.exif, ReadRecorded("whole.jpg").metadata.exif);
    EXPECT_EQ(kept.metadata.profile, ReadRecorded("whole.jpg").metadata.profile);
    EXPECT_EQ(kept.metadata.yPixelsPerMetre, 11811U);
}

TEST(WritePicture, SaysWhatHasNoPlace) {
    const auto lost = [](const char* name, ImageFormat format) {
        const LoadedPicture loaded = ReadRecorded(name);
        return WhatIsLost(loaded.picture, loaded.metadata, For(format)).size();
    };
    EXPECT_EQ(lost("whole.jpg", ImageFormat::kPng), 0U);
    EXPECT_EQ(lost("whole.jpg", ImageFormat::kBmp), 2U);   // profile, EXIF
    EXPECT_EQ(lost("whole.jpg", ImageFormat::kTiff), 1U);  // EXIF
    EXPECT_EQ(lost("whole.jpg", ImageFormat::kWebp), 1U);  // resolution
    EXPECT_EQ(lost("alpha8.png", ImageFormat::kJpeg), 1U); // transparency
}

TEST(WritePicture, NamesAskForFormats) {
    EXPECT_EQ(FormatForName("a.b/C.TIF"), ImageFormat::kTiff);
    EXPECT_EQ(FormatForWord("JPEG"), ImageFormat::kJpeg);
    for (const char* const name : {"x", "x.", "x.gif", "png"}) {
        EXPECT_THROW(FormatForName(name), Failure) << name;
    }
    EXPECT_THROW(FormatForWord(".png"), Failure);
}

} // namespace
