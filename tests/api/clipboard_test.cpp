// Pictures exchanged with other programs over the clipboard, seen from their side through the platform's calls.
#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <string>

#include "api/export_table.h"
#include "qv8com.h"
#include "support/clipboard.h"

namespace test {
namespace {

constexpr DWORD kOwner = 1; // nobody's

QV8BOOL Put(HGLOBAL image) {
    return QV8SetToClipBrd(nullptr, image, kOwner, 0, 0, 0);
}

Block Get() {
    return Block(QV8GetFromClipBrd(nullptr, kOwner, 0, 0, 0));
}

void Cut(Bytes& bytes, std::size_t from, std::size_t count) {
    const auto begin = bytes.begin() + static_cast<std::ptrdiff_t>(from);
    bytes.erase(begin, begin + static_cast<std::ptrdiff_t>(count));
}

// The picture as another program may describe it: with a header of `headerBytes`, which contains the masks.
Bytes WithLongHeader(const Picture& picture, std::size_t headerBytes, Random& random) {
    const bool hasMasks = picture.Header().biCompression == BI_BITFIELDS;
    Bytes bytes = picture.bytes;
    Bytes more(headerBytes - 40 - (hasMasks ? 12 : 0));
    std::generate(more.begin(), more.end(), [&] { return random.Byte(); });
    bytes.insert(bytes.begin() + (hasMasks ? 52 : 40), more.begin(), more.end());
    const auto biSize = static_cast<DWORD>(headerBytes);
    std::memcpy(bytes.data(), &biSize, sizeof biSize);
    return bytes;
}

TEST(GetFromClipBrd, TakesWhatOtherProgramsPutThere) {
    Random random(81);
    for (const Layout& layout : Layouts()) {
        for (const std::size_t headerBytes : {40U, 52U, 108U, 124U}) {
            SCOPED_TRACE(layout.name + std::string(", header ") + std::to_string(headerBytes));
            const Picture picture = RandomPicture(layout, RandomSide(random), random.Between(1, 20), random);
            const Bytes bytes = headerBytes == 40 ? picture.bytes : WithLongHeader(picture, headerBytes, random);
            PutOnClipboard(bytes);
            const Block block = Get();
            EXPECT_EQ(GetErrorStatus(), QV8_STATUS_SUCCESS);
            EXPECT_EQ(ReadBlock(block.get()), bytes);
            EXPECT_EQ(ClipboardContent(), bytes) << "the clipboard keeps it";
            // What came from there can be worked on, and put there again.
            EXPECT_NE(Block(QV8CopyImage(block.get(), kOwner, 0, 0, 0)), nullptr);
            Bytes again = bytes;
            if (headerBytes == 40 && layout.compression == BI_BITFIELDS) {
                Cut(again, 40, 12);
            }
            EXPECT_EQ(Put(block.get()), 1);
            EXPECT_EQ(ClipboardContent(), again);
        }
    }
}

TEST(GetFromClipBrd, TurnsTopDownPicturesBottomUp) {
    Random random(82);
    for (const Layout& layout : Layouts()) {
        SCOPED_TRACE(layout.name);
        const Picture picture = RandomPicture(layout, RandomSide(random), random.Between(1, 20), random);
        Picture turned = picture;
        BITMAPINFOHEADER header = turned.Header();
        header.biHeight = -header.biHeight;
        turned.SetHeader(header);
        const std::size_t rowBytes = picture.RowBytes();
        for (std::size_t row = 0; row != static_cast<std::size_t>(picture.Height()); ++row) {
            const std::size_t other = static_cast<std::size_t>(picture.Height()) - 1 - row;
            std::memcpy(&turned.bytes[picture.PixelOffset() + row * rowBytes],
                        &picture.bytes[picture.PixelOffset() + other * rowBytes], rowBytes);
        }
        PutOnClipboard(turned.bytes);
        EXPECT_TRUE(Holds(Get().get(), picture));
    }
}

TEST(GetFromClipBrd, RefusesWhatCannotBeAPicture) {
    using Header = BITMAPINFOHEADER;
    struct Case {
        const char* what;
        const char* layout;
        std::function<void(Header&)> change;
        std::size_t bytes = 0; // left of the block, unless 0
    };
    const auto same = [](Header&) {};
    const Case kCases[] = {
        {"one byte", "24", same, 1},
        {"39 bytes", "24", same, 39},
        {"a header", "24", same, 40},
        {"one mask", "16-565", same, 44},
        {"a table cut short", "8", same, 1000},
        {"the last byte missing", "8", same, 40 + 1024 + 5 * 12 - 1},
        {"no masks", "16-565", same, 40 + 5 * 20},
        {"a long header cut short", "24", [](Header& h) { h.biSize = 124; }},
        {"an older header", "24", [](Header& h) { h.biSize = 12; }},
        {"no header", "24", [](Header& h) { h.biSize = 0; }},
        {"the largest header", "24", [](Header& h) { h.biSize = UINT_MAX; }},
        {"a header that wraps", "24", [](Header& h) { h.biSize = UINT_MAX - 39; }},
        {"run lengths", "8", [](Header& h) { h.biCompression = BI_RLE8; }},
        {"run lengths at 4 bits", "4", [](Header& h) { h.biCompression = BI_RLE4; }},
        {"a photo", "24", [](Header& h) { h.biCompression = 4; }},
        {"any compression", "32", [](Header& h) { h.biCompression = UINT_MAX; }},
        {"width 0", "24", [](Header& h) { h.biWidth = 0; }},
        {"width -9", "24", [](Header& h) { h.biWidth = -9; }},
        {"the least width", "24", [](Header& h) { h.biWidth = INT_MIN; }},
        {"a row that wraps", "32", [](Header& h) { h.biWidth = 0x8000000; }},
        {"height 0", "24", [](Header& h) { h.biHeight = 0; }},
        {"one row more", "24", [](Header& h) { h.biHeight = 6; }},
        {"one row more, top down", "24", [](Header& h) { h.biHeight = -6; }},
        {"the least height", "24", [](Header& h) { h.biHeight = INT_MIN; }},
        {"the least height but one", "1", [](Header& h) { h.biHeight = -INT_MAX; }},
        {"rows that wrap", "32", [](Header& h) { h.biWidth = h.biHeight = 0x10000; }},
        {"depth 0", "24", [](Header& h) { h.biBitCount = 0; }},
        {"depth 12", "24", [](Header& h) { h.biBitCount = 12; }},
        {"the largest table", "8", [](Header& h) { h.biClrUsed = UINT_MAX; }},
        {"a table that wraps", "24", [](Header& h) { h.biClrUsed = 0x40000000; }},
        {"a table that wraps with masks", "16-565", [](Header& h) { h.biClrUsed = 0x3FFFFFF6; }},
    };
    Random random(83);
    for (const Case& c : kCases) {
        SCOPED_TRACE(c.what);
        Picture picture = RandomPicture(LayoutNamed(c.layout), 9, 5, random);
        BITMAPINFOHEADER header = picture.Header();
        c.change(header);
        picture.SetHeader(header);
        picture.bytes.resize(c.bytes != 0 ? c.bytes : picture.bytes.size());
        PutOnClipboard(picture.bytes);
        const hooks::Report report = hooks::Watch({}, [] { EXPECT_EQ(Get(), nullptr); });
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PICTURE);
        EXPECT_TRUE(report.blocks.empty() && report.locks == 0 && report.misuse.empty()) << report.misuse;
        EXPECT_TRUE(ClipboardIsClosed());
    }
}

#ifndef _WIN32
// A block that goes to the clipboard is the clipboard's, which frees it for the next one.
TEST(Clipboard, FreesWhatItHeld) {
    HGLOBAL held = nullptr;
    for (const bool isEmptied : {false, true}) {
        ASSERT_TRUE(OpenClipboard(nullptr) && EmptyClipboard());
        held = SetClipboardData(CF_DIB, MakeBlock({1, 2, 3}).release());
        EXPECT_EQ(GlobalSize(held), 3U);
        EXPECT_TRUE(isEmptied ? EmptyClipboard() != 0 : SetClipboardData(CF_DIB, MakeBlock({4}).release()) != nullptr);
        EXPECT_EQ(GlobalSize(held), 0U);
        EXPECT_TRUE(CloseClipboard());
    }
}
#endif

TEST(Clipboard, IsTestedAndCleared) {
    Random random(84);
    const Source source(RandomPicture(LayoutNamed("24"), 4, 4, random));
    EXPECT_EQ(Put(source.Handle()), 1);
    for (const QV8BOOL full : {1, 0, 0}) {
        SetErrorStatus(kUntouched);
        EXPECT_EQ(QV8IsClipBrdData(nullptr) != 0, full != 0);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_SUCCESS);
        EXPECT_EQ(Get() != nullptr, full != 0);
        EXPECT_EQ(GetErrorStatus(), full != 0 ? QV8_STATUS_SUCCESS : QV8_STATUS_PICTURE);
        SetErrorStatus(kUntouched);
        EXPECT_NE(QV8ClearClipBrd(nullptr), 0);
        EXPECT_EQ(GetErrorStatus(), QV8_STATUS_SUCCESS);
        EXPECT_TRUE(ClipboardIsClosed());
    }
}

// While another holds the clipboard nothing is got from it, put on it or taken off it, and it stays the other's.
// Windows may take data from any thread of the process that has it open; then that is what the call reports.
TEST(Clipboard, IsLeftAloneWhileAnotherHasIt) {
    Random random(85);
    const Picture before = RandomPicture(LayoutNamed("8"), 3, 3, random);
    const Source source(RandomPicture(LayoutNamed("24"), 4, 4, random));
    PutOnClipboard(before.bytes);
    bool taken = false;
    WhileAnotherHasTheClipboard([&] {
        const hooks::Report report = hooks::Watch({}, [&] {
            taken = Put(source.Handle()) != 0;
            EXPECT_EQ(GetErrorStatus(), taken ? QV8_STATUS_SUCCESS : QV8_STATUS_MEMORY);
            EXPECT_EQ(Get(), nullptr);
            EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PICTURE);
            EXPECT_EQ(QV8IsClipBrdData(nullptr), 0);
            EXPECT_EQ(QV8ClearClipBrd(nullptr), 0);
        });
        EXPECT_TRUE(report.blocks.empty() && report.locks == 0 && report.misuse.empty()) << report.misuse;
        EXPECT_FALSE(ClipboardIsClosed());
    });
#ifndef _WIN32
    EXPECT_FALSE(taken);
#endif
    EXPECT_EQ(ClipboardContent(), taken ? source.Content().bytes : before.bytes);
}

// The row below would be read from freed memory if rows were copied between reports.
int QV8API ClearAndGoOn(int, void*) {
    QV8ClearClipBrd(nullptr);
    return 1;
}

TEST(GetFromClipBrd, IsCompleteThoughACallbackClearsTheClipboard) {
    Random random(86);
    const Picture picture = RandomPicture(LayoutNamed("32"), 300, 200, random);
    PutOnClipboard(picture.bytes);
    const DWORD owner = AddProgressOwner(ClearAndGoOn, nullptr);
    EXPECT_TRUE(Holds(Block(QV8GetFromClipBrd(nullptr, owner, 0, 0, 0)).get(), picture));
    RemoveProgressOwner(owner);
    EXPECT_TRUE(ClipboardContent().empty());
    EXPECT_TRUE(ClipboardIsClosed());
}

} // namespace
} // namespace test
