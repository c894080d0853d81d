// The input is a BMP file. What is read is a sound picture, and the file written of it is read as the same one.
#include <cstddef>
#include <vector>

#include "pictures/bmp.h"
#include "support/picture.h"

namespace {

constexpr std::uint64_t kMaxPixels = 1U << 16U;

std::vector<unsigned char> FileOf(const Picture& picture) {
    const LockedPicture locked(picture);
    const auto header = BmpFileHeader(locked);
    std::vector<unsigned char> file(header.begin(), header.end());
    file.insert(file.end(), locked.Bytes(), locked.Bytes() + locked.Size());
    return file;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
    const BmpReading reading = ReadBmp(bytes, size, kMaxPixels);
    EXPECT_EQ(static_cast<bool>(reading.picture), reading.error.empty());
    if (!reading.picture) {
        return 0;
    }
    EXPECT_TRUE(test::IsSound(reading.picture.Handle()));
    const std::vector<unsigned char> file = FileOf(reading.picture);
    const BmpReading again = ReadBmp(file.data(), file.size(), kMaxPixels);
    EXPECT_TRUE(again.picture) << again.error;
    EXPECT_TRUE(test::ReadBlock(again.picture.Handle()) == test::ReadBlock(reading.picture.Handle()));
    return 0;
}
