// What single exports refuse, with which status, and what is looked at first where two things are wrong.
#include <climits>
#include <string>
#include <vector>

#include "api/export_table.h"
#include "qv8com.h"

namespace test {
namespace {

enum class Flaw { kNone, kNoPicture, kNoSecond, kNoMask, kWrongMask, kDepth7, kAreaType };

// A 24-bit picture of 9 x 7 pixels with a second one of 5 x 4, unless another one is given.
struct Limit {
    const char* name;
    std::vector<double> own;
    Flaw flaw;
    int status;
    int bits = 24, width = 9, height = 7;
    int secondWidth = 5;
};

constexpr int kOk = QV8_STATUS_SUCCESS;
constexpr int kBad = QV8_STATUS_PARAMETER;
constexpr int kPicture = QV8_STATUS_PICTURE;
constexpr int kMemory = QV8_STATUS_MEMORY;
constexpr int kDepth = QV8_STATUS_DEPTH;

const Limit kLimits[] = {
    // Own parameters before the area, and before the picture where that is not even opened.
    {"QV8CustomFilter", {0x100, 0, 1, 1, 1}, Flaw::kNoMask, kBad},
    {"QV8CustomFilter", {1, 0, 1, 1, 1}, Flaw::kNoMask, kPicture},
    {"QV8Emboss", {8, 1, 0}, Flaw::kNoMask, kBad},
    {"QV8Emboss", {7, 1, 0}, Flaw::kNoMask, kPicture},
    {"QV8Outline", {4, 0, 1}, Flaw::kNoMask, kBad},
    {"QV8Outline", {3, 0, 1}, Flaw::kNoMask, kPicture},
    {"QV8Mosaic", {1, 1}, Flaw::kDepth7, kBad},
    {"QV8Mosaic", {1, 2}, Flaw::kDepth7, kPicture},
    {"QV8Mosaic", {1, INT_MIN}, Flaw::kNoPicture, kPicture},
    {"QV8AutoSelectImage", {0, 0, 0, 3, 0}, Flaw::kNoPicture, kBad},
    {"QV8AutoSelectImage", {0, 0, 0, 0xFFFFFF03, 0}, Flaw::kAreaType, kBad},
    {"QV8AutoSelectImage", {0, 0, 0, 255, 0}, Flaw::kNone, kBad},
    // Sizes.
    {"QV8Resize", {0, 5, 1}, Flaw::kNone, kBad},
    {"QV8Resize", {5, -1, 1}, Flaw::kNone, kBad},
    {"QV8Resize", {0, INT_MAX, 0}, Flaw::kNone, kBad},
    {"QV8Resize", {0, 5, 1}, Flaw::kWrongMask, kPicture},
    {"QV8Resize", {INT_MAX, INT_MAX, 1}, Flaw::kNone, kMemory},
    {"QV8Resize", {INT_MAX, 1, 0}, Flaw::kNone, kMemory},
    {"QV8Resize", {1, INT_MAX, 1}, Flaw::kNone, kMemory},
    {"QV8Resize", {65536, 65536, 1}, Flaw::kNone, kMemory},
    {"QV8CreateImage", {INT_MAX, INT_MAX, 1, 2, 3}, Flaw::kNone, kMemory},
    {"QV8CreateImage", {INT_MAX, 1, 1, 2, 3}, Flaw::kNone, kMemory},
    {"QV8CreateImage", {1, INT_MAX, 1, 2, 3}, Flaw::kNone, kMemory},
    {"QV8CreateImage", {0, -5, 1, 2, 3}, Flaw::kNone, kOk},
    // Turned, a picture of two rows that is as wide as this is too high, or its sides leave 32 bits.
    {"QV8Rotation", {4500, 0, 0, 0, 1, 2, 3, 0}, Flaw::kNone, kMemory, 1, 3000000, 2},
    {"QV8Rotation", {-4501, 0, 0, 0, 1, 2, 3, 0}, Flaw::kNone, kMemory, 1, 3000000, 2},
    {"QV8Rotation", {4500, 0, 0, 0, 1, 2, 3, 1}, Flaw::kNone, kOk, 1, 3000000, 2},
    {"QV8Rotation", {4500, 0, 0, 0, 1, 2, 3, 1}, Flaw::kWrongMask, kPicture},
    // A result around both pictures.
    {"QV8Layer", {77, 1, 2, 3, 4, 5, 6, INT_MIN, 0, 0}, Flaw::kNone, kMemory},
    {"QV8Layer", {77, 1, 2, 3, 4, 5, 6, 0, INT_MAX, 0}, Flaw::kNone, kMemory},
    {"QV8Layer", {77, 1, 2, 3, 4, 5, 6, INT_MAX, INT_MIN, 1}, Flaw::kNone, kOk},
    // Depths to convert to: only 16 bits count, and the picture's own is refused.
    {"QV8ConvertColor", {24, 0, 0, 0}, Flaw::kNone, kBad},
    {"QV8ConvertColor", {0, 0, 0, 0}, Flaw::kNone, kBad},
    {"QV8ConvertColor", {12, 0, 0, 0}, Flaw::kNone, kBad},
    {"QV8ConvertColor", {79, 0, 0, 0}, Flaw::kNone, kBad},
    {"QV8ConvertColor", {0x8018, 0, 0, 0}, Flaw::kNone, kBad},
    {"QV8ConvertColor", {0x7BCD0020, 0, 0, 0}, Flaw::kNone, kOk},
    {"QV8ConvertColor", {12, 0, 0, 0}, Flaw::kNoPicture, kUntouched},
    {"QV8ConvertColor", {8, 0, 0, 0}, Flaw::kNone, kBad, 8},
    // Two points that are one, also once they are inside, a scale below a pixel or beyond a picture.
    {"QV8Panorama", {0, 1, 1, 1, 1, 0, 0, 3, 3}, Flaw::kNone, kBad},
    {"QV8Panorama", {0, 1, 1, 6, 3, INT_MAX, 2, INT_MAX, 2}, Flaw::kNone, kBad},
    {"QV8Panorama", {0, INT_MIN, -1, -3, INT_MIN, 0, 0, 3, 3}, Flaw::kNone, kBad},
    {"QV8Panorama", {0, 1, 1, 6, 3, 9, INT_MAX, INT_MAX, 9}, Flaw::kNone, kBad},
    {"QV8Panorama", {0, 1, 1, 1, 1, 0, 0, 3, 3}, Flaw::kNoSecond, kPicture},
    {"QV8Panorama", {2, 1, 1, 2, 1, 0, 0, 29999, 0}, Flaw::kNone, kBad, 24, 9, 7, 30000},
    {"QV8Panorama", {1, 0, 0, 29999, 0, 0, 0, 1, 0}, Flaw::kNone, kMemory, 24, 30000, 7, 30000},
    // No area between the corners, and none at the lower left one, which sets no status.
    {"QV8Affine", {0, 12, 8, 4, 15, 4, 8, 16}, Flaw::kNone, kBad, 24, 16, 18},
    {"QV8Affine", {5, 10, 0, 5, 12, 3, 10, 15}, Flaw::kNone, kUntouched, 24, 16, 18},
    {"QV8Affine", {0, 12, 4, 4, 15, 4, 9, 16}, Flaw::kNone, kOk, 24, 16, 18},
};

TEST(Limits, AreRefusedWithTheirStatus) {
    for (const Limit& limit : kLimits) {
        SCOPED_TRACE(std::string(limit.name) + " in row " + std::to_string(&limit - kLimits));
        Picture content = BlankPicture(limit.bits, limit.width, limit.height);
        if (limit.flaw == Flaw::kDepth7) {
            BITMAPINFOHEADER header = content.Header();
            header.biBitCount = 7;
            content.SetHeader(header);
        }
        Area area;
        area.type = limit.flaw == Flaw::kNoMask ? DWORD{QV8_AREA_MASK} : limit.flaw == Flaw::kAreaType ? 9 : area.type;
        const Scene scene = {Source(content), Source(BlankPicture(1, 2, 3)),
                             Source(BlankPicture(24, limit.secondWidth, 4)), area};
        Call call = scene.AsCall();
        call.bits = limit.bits;
        call.target = {limit.flaw == Flaw::kNoPicture ? nullptr : call.target.hImage,
                       limit.flaw == Flaw::kWrongMask ? scene.mask.Handle() : nullptr};
        call.second = limit.flaw == Flaw::kNoSecond ? nullptr : call.second;
        const Export& row = ExportNamed(limit.name);
        Arguments arguments;
        DrawArguments(row, call, {}, arguments);
        SetOwnNumbers(row, limit.own, arguments);
        const Outcome outcome = WatchExport(row, call, {}, arguments);
        EXPECT_EQ(outcome.status, limit.status);
        EXPECT_TRUE(scene.Untouched());
    }
}

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

} // namespace
} // namespace test
