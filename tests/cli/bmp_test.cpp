#include "pictures/bmp.h"

#include <gtest/gtest.h>

#include "files.h"

namespace {

constexpr std::uint64_t kManyPixels = 1 << 20;

const std::vector<BmpForm> kForms{
    {.bits = 1, .width = 33},
    {.bits = 1, .width = 1, .height = 1, .colours = 1},
    {.bits = 4, .width = 9},
    {.bits = 4, .width = 8, .colours = 5},
    {.bits = 8, .width = 5},
    {.bits = 8, .width = 4, .colours = 200},
    {.bits = 16, .width = 3},
    {.bits = 16, .width = 3, .masks = {0xF800, 0x07E0, 0x001F}},
    {.bits = 24, .width = 1, .height = 3},
    {.bits = 24, .width = 6, .colours = 3},
    {.bits = 32, .width = 2},
    {.bits = 32, .width = 2, .colours = 2, .masks = {0xFF0000, 0xFF00, 0xFF}},
};

// From memory that ends where the file ends, so that a sanitizer sees a read beyond it.
BmpReading Read(const Bytes& file, std::uint64_t maxPixels = kManyPixels) {
    const Bytes exact(file.begin(), file.end());
    return ReadBmp(exact.data(), exact.size(), maxPixels);
}

Bytes Block(const Picture& picture) {
    const LockedPicture locked(picture);
    EXPECT_GE(GlobalSize(picture.Handle()), locked.Size());
    return Bytes(locked.Bytes(), locked.Bytes() + locked.Size());
}

std::string Name(const BmpForm& form) {
    return std::to_string(form.bits) + " bits, header " + std::to_string(form.headerSize) + ", " +
           std::to_string(form.colours) + " colours, " + std::to_string(form.masks.size()) + " masks";
}

TEST(Bmp, EveryDepthComesBackByteForByte) {
    for (const BmpForm& form : kForms) {
        SCOPED_TRACE(Name(form));
        const Bytes file = BuildBmp(form);
        const BmpReading reading = Read(file);
        ASSERT_EQ(reading.error, "");
        const auto header = BmpFileHeader(LockedPicture(reading.picture));
        Bytes written(header.begin(), header.end());
        const Bytes block = Block(reading.picture);
        written.insert(written.end(), block.begin(), block.end());
        EXPECT_EQ(written, file);
    }
}

TEST(Bmp, OtherFormsOfAFileGiveTheSamePicture) {
    for (const BmpForm& plain : kForms) {
        const Bytes expected = Slice(BuildBmp(plain), 14);
        for (const std::uint32_t headerSize : {40U, 52U, 56U, 108U, 124U}) {
            for (const bool topDown : {false, true}) {
                BmpForm form = plain;
                form.headerSize = headerSize;
                form.topDown = topDown;
                form.gap = topDown ? 0 : 6;
                SCOPED_TRACE(Name(form));
                Bytes file = BuildBmp(form);
                file.push_back(0xEE); // behind the pixels there may be anything
                const BmpReading reading = Read(file);
                ASSERT_EQ(reading.error, "");
                EXPECT_EQ(Block(reading.picture), expected);
            }
        }
    }
}

TEST(Bmp, EveryTruncatedFileIsRefused) {
    for (const BmpForm& form : kForms) {
        const Bytes file = BuildBmp(form);
        for (std::size_t size = 0; size < file.size(); ++size) {
            const BmpReading reading = Read(Slice(file, 0, size));
            ASSERT_FALSE(reading.picture) << Name(form) << " cut to " << size;
            ASSERT_NE(reading.error, "");
        }
    }
}

TEST(Bmp, HostileHeadersAreRefusedWithTheReason) {
    struct Case {
        std::size_t at;
        std::uint32_t value;
        const char* words;
    };
    const Case cases[] = {
        {10, 57, "colour table"},
        {10, 0xFFFFFFFF, "within the pixels"},
        {14, 12, "OS/2"},
        {14, 64, "OS/2"},
        {14, 0xFFFFFFFF, "header"},
        {14, 41, "header of 41"},
        {18, 0, "size"},
        {18, 0xFFFFFFFF, "size"},
        {18, 0x7FFFFFFF, "limit"},
        {22, 0, "size"},
        {22, 0x80000000, "size"},
        {22, 0x7FFFFFFF, "limit"},
        {22, 0x80000001, "limit"},
        {26, 1 | 2 << 16, "2 bits"},
        {30, 1, "run-length"},
        {30, 2, "run-length"},
        {30, 3, "masks"},
        {30, 5, "compression 5"},
        {46, 0xFFFFFFFF, "colour table"},
        {46, 0x40000000, "colour table"},
        {18, 700000, "within the pixels"},
    };
    for (const Case& hostile : cases) {
        Bytes file = BuildBmp({.bits = 8, .width = 4, .height = 1});
        Put32(file, hostile.at, hostile.value);
        const BmpReading reading = Read(file);
        EXPECT_FALSE(reading.picture);
        EXPECT_NE(reading.error.find(hostile.words), std::string::npos)
            << hostile.at << " = " << hostile.value << ": " << reading.error;
    }
}

// Whatever a byte of the headers becomes, there is a picture that fits its block, or a reason.
TEST(Bmp, AnyChangedByteIsSurvived) {
    for (const BmpForm& form : kForms) {
        const Bytes file = BuildBmp(form);
        for (std::size_t at = 2; at < 66 && at < file.size(); ++at) {
            for (const unsigned value : {0x00U, 0x01U, 0x7FU, 0x80U, 0xFFU}) {
                Bytes changed = file;
                changed[at] = static_cast<unsigned char>(value);
                const BmpReading reading = Read(changed);
                ASSERT_NE(static_cast<bool>(reading.picture), !reading.error.empty());
                if (reading.picture) {
                    EXPECT_LE(Block(reading.picture).size(), file.size());
                }
            }
        }
    }
}

TEST(Bmp, TheLimitOfPixelsIsTheLastNumberAllowed) {
    const Bytes file = BuildBmp({.bits = 24, .width = 3, .height = 2});
    EXPECT_TRUE(Read(file, 6).picture);
    EXPECT_FALSE(Read(file, 5).picture);
}

} // namespace
