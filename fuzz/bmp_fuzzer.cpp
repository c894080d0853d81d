// The input is a BMP file. What is read is a sound picture, and the file written of it is read as the same one.
#include <cstddef>
#include <vector>

#include "pictures/bmp.h"
#include "support/picture.h"

namespace {

constexpr std::uint64_t kMaxPixels = 1U << 16U;

LoadedPicture Read(ByteView file) {
    ReadOptions options;
    options.maxPixels = kMaxPixels;
    return ReadBmp(file, options);
}

std::vector<unsigned char> FileOf(const LoadedPicture& loaded) {
    std::vector<unsigned char> file;
    kBmpCodec.write(loaded.picture, loaded.metadata, {}, [&file](const void* from, std::size_t size) {
        const auto* const bytes = static_cast<const unsigned char*>(from);
        file.insert(file.end(), bytes, bytes + size);
    });
    return file;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* bytes, std::size_t size) {
    LoadedPicture loaded;
    try {
        loaded = Read({bytes, size});
    } catch (const Refusal&) {
        return 0;
    }
    EXPECT_TRUE(test::IsSound(loaded.picture.Handle()));
    const LoadedPicture again = Read(FileOf(loaded));
    EXPECT_TRUE(test::ReadBlock(again.picture.Handle()) == test::ReadBlock(loaded.picture.Handle()));
    return 0;
}
