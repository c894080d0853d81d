#include <gtest/gtest.h>

#include <array>

#include "pictures/failure.h"
#include "pictures/metadata.h"
#include "recorded.h"

namespace {

bool Has(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

std::vector<Recorded> Readable() {
    std::vector<Recorded> all = AllRecorded();
    std::erase_if(all, [](const Recorded& recorded) { return !recorded.refusal.empty(); });
    return all;
}

// By libraries that the same picture went through another way, so no decoder checks itself.
TEST(ReadPicture, SeesWhatOtherProgramsSee) {
    for (const Recorded& recorded : AllRecorded()) {
        SCOPED_TRACE(recorded.name);
        if (!recorded.refusal.empty()) {
            const std::string reason = RefusalOf(FileOf(recorded.name));
            EXPECT_TRUE(Has(reason, recorded.refusal)) << reason;
            continue;
        }
        const LoadedPicture loaded = ReadRecorded(recorded.name);
        const LockedPicture picture(loaded.picture);
        EXPECT_EQ(picture.Width(), recorded.width);
        EXPECT_EQ(picture.Height(), recorded.height);
        EXPECT_EQ(picture.Header().biBitCount, recorded.depth);
        if (recorded.pixels != "?") {
            EXPECT_EQ(HashOf(loaded), recorded.pixels);
        }
    }
}

// A file that lacks its end is refused, but for what ends in bytes that say nothing.
TEST(ReadPicture, RefusesWhatIsCutOff) {
    for (const Recorded& recorded : Readable()) {
        const Bytes file = FileOf(recorded.name);
        const std::size_t step = file.size() / 50 + 1;
        for (std::size_t size = 0; size < file.size() * 9 / 10; size += step) {
            const Bytes cut(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size));
            if (!recorded.name.ends_with(".tif")) { // whose pixels may come before what describes them
                EXPECT_NE(RefusalOf(cut), "") << recorded.name << " cut to " << size;
            } else {
                RefusalOf(cut);
            }
        }
    }
}

TEST(ReadPicture, SurvivesAnyChangedByte) {
    for (const Recorded& recorded : Readable()) {
        const Bytes file = FileOf(recorded.name);
        const std::size_t step = file.size() / 100 + 1;
        for (std::size_t at = 0; at < file.size(); at += step) {
            for (const int value : {0x00, 0x7F, 0xFF}) {
                Bytes changed = file;
                changed[at] = static_cast<unsigned char>(value);
                ReadOptions options;
                options.maxPixels = 1 << 16;
                RefusalOf(changed, options); // a sanitizer watches
            }
        }
    }
}

TEST(ReadPicture, AsksBeforeItTakesMemory) {
    for (const char* const name : {"rle8.bmp", "colour8.png", "halved.jpg", "tiles.tif", "alpha.webp"}) {
        ReadOptions options;
        options.maxPixels = 21 * 13 - 1;
        EXPECT_TRUE(Has(RefusalOf(FileOf(name), options), "21 x 13 pixels are above the limit of 272")) << name;
        options.maxPixels = 21 * 13;
        std::uint64_t told = 0;
        options.sizeKnown = [&told](std::uint64_t width, std::uint64_t height) { told = width * height; };
        EXPECT_EQ(RefusalOf(FileOf(name), options), "") << name;
        EXPECT_EQ(told, 21U * 13) << name;
    }
}

TEST(ReadPicture, TellsWhatItLeavesOut) {
    const std::array<std::array<const char*, 2>, 5> cases{{{"colour16.png", "rounded"},
                                                           {"grey16.tif", "rounded"},
                                                           {"two.tif", "first"},
                                                           {"inks.jpg", "inks"},
                                                           {"inks.tif", "profile"}}};
    for (const auto& [name, words] : cases) {
        const std::vector<std::string> notes = ReadRecorded(name).notes;
        ASSERT_EQ(notes.size(), 1U) << name;
        EXPECT_TRUE(Has(notes[0], words)) << notes[0];
    }
    EXPECT_TRUE(ReadRecorded("colour8.png").notes.empty());
}

// White paper and full inks, whose colours no rule can miss.
TEST(ReadPicture, ResolutionIsTurnedWithThePicture) {
    for (unsigned orientation = 1; orientation <= 8; ++orientation) {
        LoadedPicture loaded = ReadRecorded("colour8.png");
        loaded.metadata.xPixelsPerMetre = 100;
        loaded.metadata.yPixelsPerMetre = 200;
        ApplyOrientation(loaded, orientation);
        EXPECT_EQ(loaded.metadata.xPixelsPerMetre, LockedPicture(loaded.picture).Width() == 21 ? 100U : 200U)
            << orientation;
    }
}

TEST(ReadPicture, InksBecomeColours) {
    for (const char* const name : {"inks.jpg", "inks.tif"}) {
        const LoadedPicture inks = ReadRecorded(name);
        const LoadedPicture colours = ReadRecorded("colour8.png");
        const LockedPicture a(inks.picture);
        const LockedPicture b(colours.picture);
        double sum = 0;
        for (std::size_t y = 0; y < a.Height(); ++y) {
            for (std::size_t x = 0; x < 3 * a.Width(); ++x) {
                sum += std::abs(a.RowFromTop(y)[x] - b.RowFromTop(y)[x]);
            }
        }
        EXPECT_LT(sum / (3.0 * 21 * 13), 30) << name;
    }
}

TEST(ReadPicture, TakesProfileExifAndResolution) {
    const LoadedPicture png = ReadRecorded("profile.png");
    EXPECT_GT(png.metadata.profile.size(), 128U);
    EXPECT_EQ(png.metadata.xPixelsPerMetre, 11811U);
    EXPECT_EQ(png.metadata.yPixelsPerMetre, 5906U);
    const LoadedPicture jpeg = ReadRecorded("whole.jpg"); // lies on its side
    EXPECT_EQ(jpeg.metadata.profile, png.metadata.profile);
    EXPECT_EQ(jpeg.metadata.xPixelsPerMetre, 5906U);
    EXPECT_EQ(jpeg.metadata.yPixelsPerMetre, 11811U);
    EXPECT_EQ(ReadRecorded("colour.webp").metadata.profile, png.metadata.profile);
    EXPECT_EQ(ReadRecorded("turned.tif").metadata.xPixelsPerMetre, 5906U);
    const std::string exif(jpeg.metadata.exif.begin(), jpeg.metadata.exif.end());
    EXPECT_EQ(exif.substr(0, 4), std::string("MM\0*", 4));
    EXPECT_EQ(exif[19], 1) << "it still asks to be turned";
    EXPECT_TRUE(Has(exif, "Ann"));
    EXPECT_FALSE(Has(exif, "SMALL!"));
    EXPECT_TRUE(ReadRecorded("alpha8.png").metadata.alpha);
    EXPECT_TRUE(ReadRecorded("alpha.bmp").metadata.alpha);
    EXPECT_FALSE(ReadRecorded("colour8.png").metadata.alpha);
}

} // namespace
