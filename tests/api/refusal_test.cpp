// For every export: what is refused, with which status, and that nothing else is.
#include <climits>
#include <cstring>
#include <fstream>
#include <functional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "api/export_table.h"

namespace test {
namespace {

constexpr int kWidth = 21;
constexpr int kHeight = 13;

void Expect(const Export& row, const Call& call, int status) {
    const Outcome outcome = WatchExport(row, call);
    EXPECT_EQ(outcome.status, status);
    EXPECT_EQ(outcome.succeeded, status == kOk);
}

TEST(EveryExport, HasARowInTheTable) {
    std::set<std::string> exported;
    std::ifstream file(QV8_EXPORT_LIST);
    std::string word;
    while (file >> word) {
        if (word.rfind("QV8", 0) == 0 && word.find('@') == std::string::npos) {
            exported.insert(word);
        }
    }
    std::set<std::string> rows;
    for (const Export& row : Exports()) {
        rows.insert(row.name);
    }
    EXPECT_EQ(rows, exported);
}

TEST(EveryExport, RefusesZeroHandles) {
    for (const Export& row : Exports()) {
        SCOPED_TRACE(row.name);
        Expect(row, Call{}, row.zeroHandleStatus);
        if (row.TakesSecond()) {
            const Source good(BlankPicture(24, kWidth, kHeight));
            for (const bool first : {true, false}) {
                Call call;
                (first ? call.second : call.target.hImage) = good.Handle();
                Expect(row, call, row.zeroHandleStatus);
                EXPECT_TRUE(good.Untouched());
            }
        }
    }
}

TEST(EveryExport, AcceptsTheLayoutsItSaysAndNoOther) {
    Random random(10);
    for (const Export& row : Exports()) {
        for (const Layout& layout : Layouts()) {
            SCOPED_TRACE(std::string(row.name) + " at " + layout.name);
            const Scene scene = RandomScene(layout, AreaForm::kWhole, kWidth, kHeight, random);
            Expect(row, scene.AsCall(), row.Accepts(layout) ? kOk : row.badPictureStatus);
            if (row.TakesSecond()) {
                Call turned = scene.AsCall();
                std::swap(turned.target.hImage, turned.second);
                Expect(row, turned, row.Accepts(layout) ? kOk : row.badPictureStatus);
            }
            EXPECT_TRUE(scene.Untouched());
        }
    }
}

// --- Areas -----------------------------------------------------------------------------------------------------------

enum class Mask { kNone, kGood, kWider, kHigher, kTurned, kEightBits, kCutShort, kEmpty };

struct AreaCase {
    const char* what;
    DWORD type;
    std::vector<POINT> points;
    Mask mask;
    int status;
    RECT rect = {2, 2, 9, 9};
    bool omitPoints = false;
};

const AreaCase kAreas[] = {
    {"type 4", 4, {}, Mask::kGood, QV8_STATUS_PARAMETER},
    {"type 255", 255, {}, Mask::kGood, QV8_STATUS_PARAMETER},
    {"low byte 4", 0xFFFFFF04, {}, Mask::kGood, QV8_STATUS_PARAMETER},
    {"low byte 1", 0xABCDEF01, {}, Mask::kNone, kOk},
    {"whole with a bad mask", QV8_AREA_WHOLE, {}, Mask::kCutShort, kOk},
    {"no points", QV8_AREA_POLYGON, {}, Mask::kNone, QV8_STATUS_PARAMETER},
    {"null points", QV8_AREA_POLYGON, {{3, 3}, {5, 9}}, Mask::kNone, QV8_STATUS_PARAMETER, {}, true},
    {"one point", QV8_AREA_POLYGON, {{3, 3}}, Mask::kNone, QV8_STATUS_PARAMETER},
    {"two points", QV8_AREA_POLYGON, {{3, 3}, {5, 9}}, Mask::kNone, kOk},
    {"the farthest points", QV8_AREA_POLYGON, {{INT_MIN, INT_MAX}, {INT_MAX, INT_MIN}, {0, 0}}, Mask::kNone, kOk},
    {"the largest ellipse", QV8_AREA_ELLIPSE, {}, Mask::kNone, kOk, {INT_MIN, INT_MAX, INT_MAX, INT_MIN}},
    {"no mask", QV8_AREA_MASK, {}, Mask::kNone, QV8_STATUS_PICTURE},
    {"a mask", QV8_AREA_MASK, {}, Mask::kGood, kOk},
    {"a wider mask", QV8_AREA_MASK, {}, Mask::kWider, QV8_STATUS_PICTURE},
    {"a higher mask", QV8_AREA_MASK, {}, Mask::kHigher, QV8_STATUS_PICTURE},
    {"a mask on its side", QV8_AREA_MASK, {}, Mask::kTurned, QV8_STATUS_PICTURE},
    {"a mask of 8 bits", QV8_AREA_MASK, {}, Mask::kEightBits, QV8_STATUS_PICTURE},
    {"a mask cut short", QV8_AREA_MASK, {}, Mask::kCutShort, QV8_STATUS_PICTURE},
    {"an empty mask", QV8_AREA_MASK, {}, Mask::kEmpty, QV8_STATUS_MEMORY},
};

Block MakeMask(Mask mask) {
    switch (mask) {
    case Mask::kNone:
        return nullptr;
    case Mask::kGood:
        return MakeBlock(BlankPicture(1, kWidth, kHeight).bytes);
    case Mask::kWider:
        return MakeBlock(BlankPicture(1, kWidth + 1, kHeight).bytes);
    case Mask::kHigher:
        return MakeBlock(BlankPicture(1, kWidth, kHeight + 1).bytes);
    case Mask::kTurned:
        return MakeBlock(BlankPicture(1, kHeight, kWidth).bytes);
    case Mask::kEightBits:
        return MakeBlock(BlankPicture(8, kWidth, kHeight).bytes);
    case Mask::kCutShort: {
        Bytes bytes = BlankPicture(1, kWidth, kHeight).bytes;
        bytes.resize(bytes.size() - 16);
        return MakeBlock(bytes);
    }
    default:
        return MakeBlock({});
    }
}

// Of a mask that is looked at whatever the area.
int StatusOf(Mask mask) {
    if (mask == Mask::kEmpty) {
        return QV8_STATUS_MEMORY;
    }
    return mask == Mask::kNone || mask == Mask::kGood ? kOk : QV8_STATUS_PICTURE;
}

TEST(EveryExport, ChecksItsArea) {
    Random random(11);
    for (const Export& row : Exports()) {
        for (const Layout& layout : Layouts()) {
            if (!row.Accepts(layout)) {
                continue;
            }
            const Source picture(RandomPicture(layout, kWidth, kHeight, random));
            for (const AreaCase& areaCase : kAreas) {
                SCOPED_TRACE(std::string(row.name) + " at " + layout.name + " with " + areaCase.what);
                const Block mask = MakeMask(areaCase.mask);
                Call call;
                call.target = {picture.Handle(), mask.get()};
                call.second = picture.Handle();
                call.bits = layout.bits;
                call.area = {areaCase.type, areaCase.points, areaCase.rect, 1, areaCase.omitPoints};
                const bool refusesMask = areaCase.type == QV8_AREA_MASK && !row.TakesMasks();
                const int status = refusesMask ? QV8_STATUS_PARAMETER : areaCase.status;
                const int statusAlong = row.areaUse == AreaUse::kMaskAlong ? StatusOf(areaCase.mask) : kOk;
                Expect(row, call, row.UsesAreaOf(layout) ? status : statusAlong);
                EXPECT_TRUE(picture.Untouched());
            }
        }
    }
}

// --- Damaged pictures ------------------------------------------------------------------------------------------------

struct Damage {
    const char* what;
    const char* layout;
    std::function<void(Picture&)> apply;
    std::set<int> statuses;
};

std::function<void(Picture&)> Change(const std::function<void(BITMAPINFOHEADER&)>& change) {
    return [change](Picture& picture) {
        BITMAPINFOHEADER header = picture.Header();
        change(header);
        picture.SetHeader(header);
    };
}

std::function<void(Picture&)> CutTo(std::size_t bytes) {
    return [bytes](Picture& picture) { picture.bytes.resize(bytes); };
}

std::function<void(Picture&)> Masks(DWORD red, DWORD green, DWORD blue) {
    return [=](Picture& picture) {
        const DWORD masks[] = {red, green, blue};
        std::memcpy(&picture.bytes[40], masks, sizeof masks);
    };
}

const std::set<int> kPictureStatus = {QV8_STATUS_PICTURE};
const std::set<int> kLockFailed = {-2};
const std::set<int> kOddLayout = {-1}; // refused as a picture, except where odd layouts are accepted

const Damage kDamages[] = {
    {"an empty block", "24", CutTo(0), kLockFailed},
    {"one byte", "24", CutTo(1), kPictureStatus},
    {"half a header", "24", CutTo(20), kPictureStatus},
    {"only a header", "24", CutTo(40), kPictureStatus},
    {"only a header and a table", "8", CutTo(40 + 1024), kPictureStatus},
    {"half a table", "8", CutTo(40 + 512), kPictureStatus},
    {"rows missing", "24", CutTo(40 + 64 * 12), kPictureStatus},
    {"one mask", "16-565", CutTo(44), kPictureStatus},
    {"width 0", "24", Change([](auto& header) { header.biWidth = 0; }), kPictureStatus},
    {"width -1", "24", Change([](auto& header) { header.biWidth = -1; }), kPictureStatus},
    {"width -21", "1", Change([](auto& header) { header.biWidth = -21; }), kPictureStatus},
    {"the least width", "8", Change([](auto& header) { header.biWidth = INT_MIN; }), kPictureStatus},
    {"height 0", "24", Change([](auto& header) { header.biHeight = 0; }), kPictureStatus},
    {"height -13", "24", Change([](auto& header) { header.biHeight = -13; }), kPictureStatus},
    {"the least height", "16", Change([](auto& header) { header.biHeight = INT_MIN; }), kPictureStatus},
    {"one row more", "32", Change([](auto& header) { ++header.biHeight; }), kPictureStatus},
    {"the largest width", "32", Change([](auto& header) { header.biWidth = INT_MAX; }), kPictureStatus},
    {"the largest height", "1", Change([](auto& header) { header.biHeight = INT_MAX; }), kPictureStatus},
    // 2^16 x 2^16 x 4 bytes is 0 in 32 bits; a row of 2^27 pixels at 32 bits is 2^32 bits.
    {"a size that wraps", "32", Change([](auto& header) { header.biWidth = header.biHeight = 0x10000; }),
     kPictureStatus},
    {"a row that wraps", "32", Change([](auto& header) { header.biWidth = 0x8000000; }), kPictureStatus},
    {"a table past the end", "8", Change([](auto& header) { header.biClrUsed = 100000; }), kPictureStatus},
    {"a table that wraps", "8", Change([](auto& header) { header.biClrUsed = 0x40000000; }), kPictureStatus},
    {"the largest table", "4", Change([](auto& header) { header.biClrUsed = 0xFFFFFFFF; }), kPictureStatus},
    {"a table before true colour", "24", Change([](auto& header) { header.biClrUsed = 0x7FFFFFFF; }), kPictureStatus},
    {"run lengths", "16", Change([](auto& header) { header.biCompression = BI_RLE8; }), kOddLayout},
    {"odd masks", "16-565", Masks(0x0F00, 0x00F0, 0x000F), kOddLayout},
    {"turned masks", "16-555", Masks(0x001F, 0x03E0, 0x7C00), kOddLayout},
    {"no masks", "16-555", Masks(0, 0, 0), kOddLayout},
    {"turned masks", "32-fields", Masks(0xFF, 0xFF00, 0xFF0000), kOddLayout},
    // The size of the header is not looked at beyond what the companion says of it.
    {"header size 0", "24", Change([](auto& header) { header.biSize = 0; }), {kOk, QV8_STATUS_PICTURE}},
    {"header size 12", "8", Change([](auto& header) { header.biSize = 12; }), {kOk, QV8_STATUS_PICTURE}},
    {"header size 124", "16-565", Change([](auto& header) { header.biSize = 124; }), {kOk, QV8_STATUS_PICTURE}},
    {"the largest header", "32", Change([](auto& header) { header.biSize = UINT_MAX; }), {kOk, QV8_STATUS_PICTURE}},
};

// The call with `block` as its picture, or as its second one beside a good first.
Call CallWith(HGLOBAL block, int bits, bool asSecond, const Source& good) {
    Call call;
    call.target.hImage = asSecond ? good.Handle() : block;
    call.second = asSecond ? block : good.Handle();
    call.bits = bits;
    return call;
}

// What the row says of such a picture. Odd layouts are refused as pictures, except where they are accepted.
std::set<int> StatusesOf(const Export& row, const Damage& damage) {
    if (damage.statuses == kLockFailed) {
        return {row.Accepts(LayoutNamed(damage.layout)) ? row.LockStatus() : row.badPictureStatus};
    }
    if (damage.statuses == kOddLayout && (row.accepts & kAcceptOdd) != 0) {
        return {kOk};
    }
    if (damage.statuses == kOddLayout || !row.Accepts(LayoutNamed(damage.layout))) {
        return {row.badPictureStatus};
    }
    std::set<int> statuses = damage.statuses;
    if (statuses.erase(QV8_STATUS_PICTURE) != 0) {
        statuses.insert(row.badPictureStatus);
    }
    return statuses;
}

TEST(EveryExport, RefusesDamagedPictures) {
    Random random(12);
    const Source good(BlankPicture(24, kWidth, kHeight));
    for (const Export& row : Exports()) {
        for (const Damage& damage : kDamages) {
            if (!row.TakesPicture()) {
                continue;
            }
            const Layout& layout = LayoutNamed(damage.layout);
            SCOPED_TRACE(std::string(row.name) + " with " + damage.what + " at " + layout.name);
            Picture picture = RandomPicture(layout, kWidth, kHeight, random);
            damage.apply(picture);
            const Block block = MakeBlock(picture.bytes);
            for (int place = 0; place <= static_cast<int>(row.TakesSecond()); ++place) {
                const Outcome outcome = WatchExport(row, CallWith(block.get(), layout.bits, place == 1, good));
                EXPECT_EQ(StatusesOf(row, damage).count(outcome.status), 1U) << "status " << outcome.status;
                EXPECT_EQ(ReadBlock(block.get()), picture.bytes);
            }
            EXPECT_TRUE(good.Untouched());
        }
    }
}

TEST(EveryExport, RefusesDepthsThatDoNotExist) {
    const Source good(BlankPicture(24, kWidth, kHeight));
    for (const Export& row : Exports()) {
        for (const int bits : {0, 2, 3, 5, 7, 9, 12, 15, 17, 31, 33, 48, 64, 80, 0x101, 0x8018, 0xFFFF}) {
            SCOPED_TRACE(std::string(row.name) + " at " + std::to_string(bits) + " bits");
            // Large enough for any of these depths, so that only the depth is wrong.
            Picture picture = BlankPicture(32, 4, 4);
            picture.bytes.resize(40 + 0x10000 * 8);
            BITMAPINFOHEADER header = picture.Header();
            header.biBitCount = static_cast<WORD>(bits);
            picture.SetHeader(header);
            const Block block = MakeBlock(picture.bytes);
            for (int place = 0; place <= static_cast<int>(row.TakesSecond()); ++place) {
                Expect(row, CallWith(block.get(), bits, place == 1, good), row.unknownDepthStatus);
            }
        }
    }
}

} // namespace
} // namespace test
