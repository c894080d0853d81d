// What single exports refuse beyond what the examples show.

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

constexpr int kBad = QV8_STATUS_PARAMETER;
constexpr int kPicture = QV8_STATUS_PICTURE;
constexpr int kDepth = QV8_STATUS_DEPTH;

TEST(Limits, DepthsThatCannotBeMade) {
    const Export& row = ExportNamed("QV8CreateImage");
    for (const DWORD bits : {0U, 2U, 12U, 80U, 0xFFE8U, 0x10018U}) {
        Call call;
        call.bits = static_cast<int>(bits);
        EXPECT_EQ(WatchExport(row, call).status, bits == 0x10018 ? kOk : kDepth) << bits;
    }
}

TEST(Limits, NullPointersThatAreNeeded) {
    const Source picture(BlankPicture(24, 5, 3));
    const ImageSet target = {picture.Handle(), nullptr};
    const auto refuses = [](auto result, int expected) {
        EXPECT_FALSE(result);
        EXPECT_EQ(GetErrorStatus(), expected);
    };
    refuses(QV8CustomFilter(&target, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, nullptr, 1, 0, 1, 1, 1, 1, 0, 0, 0), kBad);
    refuses(QV8SelectImageEx(target.hImage, nullptr, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 1, 2, 3, 1, 0, 0, 0),
            kBad);
    refuses(
        QV8AutoSelectImageEx(target.hImage, nullptr, QV8_AREA_WHOLE, nullptr, 0, nullptr, 1, 1, 2, 3, 0, 5, 1, 0, 0, 0),
        kBad);
    refuses(QV8ResizeEx(&target, nullptr, 5, 3, 0, 1, 0, 0, 0), kBad);
    refuses(QV8RotationEx(&target, nullptr, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0), kBad);
    refuses(QV8SetSecretImage(target.hImage, nullptr, nullptr, "", 9, 0, 0, 0, 0, 0, 0, 5, 0, 0, 4, 2, 1, 0, 0, 0),
            kBad);
    refuses(QV8PasteImage(target.hImage, nullptr, 0, 0, 0, 9, nullptr, nullptr, nullptr, 0, 0, 0, 1, 0, 0, 0),
            kPicture);
}

// One of three pointers to a clear colour is none.
TEST(Limits, AClearColourHasThreeChannels) {
    const Source base(BlankPicture(24, 3, 3));
    Picture white = BlankPicture(24, 1, 1);
    white.SetColour(0, 0, {255, 255, 255});
    const Source image(white);
    const ImageSet pasted = {image.Handle(), nullptr};
    const BYTE clear = 255;
    for (const BYTE* const green : {&clear, static_cast<const BYTE*>(nullptr)}) {
        const Block result(
            QV8PasteImage(base.Handle(), &pasted, 0, 0, 0, 255, &clear, green, &clear, 1, 1, 0, 1, 0, 0, 0));
        EXPECT_EQ(Picture{ReadBlock(result.get())}.ColourAt(1, 1).red, green != nullptr ? 0 : 255);
    }
}

// More pixels in one than have a sum of 31 bits for sure: one level in two is 1, and a half is rounded up.
TEST(Limits, MeansOfMillionsOfPixels) {
    constexpr int kSide = 2904;
    Picture picture = BlankPicture(24, kSide, kSide);
    for (std::size_t i = picture.PixelOffset(); i < picture.bytes.size(); i += 2) {
        picture.bytes[i] = 1;
    }
    const Source source(picture);
    const ImageSet target = {source.Handle(), nullptr};
    const ImageSet small = QV8Resize(&target, 1, 1, 1, 1, 0, 0, 0);
    const Block result(small.hImage);
    EXPECT_EQ(Picture{ReadBlock(result.get())}.ColourAt(0, 0).green, 1);
}

} // namespace
} // namespace test
