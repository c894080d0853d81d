// The companion library: status per thread, what headers say, progress and who is told of it.
#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <cstring>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "qv8com.h"
#include "qv8effect.h"

namespace {

// --- Status ----------------------------------------------------------------------------------------------------------

TEST(CompanionStatus, BelongsToTheThreadThatSetIt) {
    SetErrorStatus(QV8_STATUS_PICTURE);
    int atStart = -1;
    int afterwards = -1;
    std::thread([&] {
        atStart = GetErrorStatus();
        SetErrorStatus(QV8_STATUS_MEMORY);
        afterwards = GetErrorStatus();
    }).join();
    EXPECT_EQ(atStart, QV8_STATUS_SUCCESS);
    EXPECT_EQ(afterwards, QV8_STATUS_MEMORY);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_PICTURE);
}

TEST(CompanionStatus, EachHasATextOfItsOwn) {
    std::set<std::string> texts;
    for (const int code : {0, 1, 2, 3, 4, 5, 7, 9}) {
        texts.insert(GetErrorStatusText(code));
    }
    EXPECT_EQ(texts.size(), 8U);
    EXPECT_EQ(texts.count(""), 0U);
    EXPECT_STREQ(GetErrorStatusText(QV8_STATUS_MEMORY), "out of memory");
    for (const int code : {6, 8, 10, -1, INT_MIN, INT_MAX}) {
        EXPECT_STREQ(GetErrorStatusText(code), "unknown status") << code;
    }
}

// --- Bitmap information ----------------------------------------------------------------------------------------------

struct MaskedHeader {
    BITMAPINFOHEADER header;
    DWORD masks[3];
};

struct HeaderCase {
    WORD bitCount;
    DWORD compression;
    DWORD coloursUsed;
    DWORD masks[3];
    int colours;
    int tableBytes;
    int layout16;
    int layout32;
    DWORD headerBytes = 40;
};

constexpr DWORD kFields = 3;
constexpr int kMost = 0x7FFFFFFF;

const HeaderCase kHeaders[] = {
    {1, 0, 0, {}, 2, 8, -1, -1},
    {4, 0, 0, {}, 16, 64, -1, -1},
    {8, 0, 0, {}, 256, 1024, -1, -1},
    {8, 0, 255, {}, 255, 1020, -1, -1},
    {8, kFields, 3, {}, 3, 12, -1, -1},
    {1, 0, 1, {}, 1, 4, -1, -1},
    {24, 0, 0, {}, 0, 0, -1, -1},
    {24, 0, 7, {}, 7, 28, -1, -1},
    {24, kFields, 0, {0xFF0000, 0xFF00, 0xFF}, 0, 0, -1, -1},
    {16, 0, 0, {}, 0, 0, 1, -1},
    {16, 0, 0, {0xF800, 0x07E0, 0x001F}, 0, 0, 1, -1}, // BI_RGB: what follows are no masks
    {16, kFields, 0, {0xF800, 0x07E0, 0x001F}, 0, 12, 2, -1},
    {16, kFields, 0, {0x7C00, 0x03E0, 0x001F}, 0, 12, 3, -1},
    {16, kFields, 2, {0x7C00, 0x03E0, 0x001F}, 2, 20, 3, -1},
    {16, kFields, 0, {0x001F, 0x03E0, 0x7C00}, 0, 12, -1, -1},
    {16, kFields, 0, {0xF800, 0x07E0, 0x003F}, 0, 12, -1, -1},
    {16, kFields, 0, {0x0F00, 0x00F0, 0x000F}, 0, 12, -1, -1},
    {16, 1, 0, {0x7C00, 0x03E0, 0x001F}, 0, 0, -1, -1},
    {16, kFields, 0, {0xF800, 0x07E0, 0x001F}, 0, 0, 2, -1, 108}, // the longer header contains them
    {32, 0, 0, {}, 0, 0, -1, 1},
    {32, kFields, 0, {0xFF0000, 0xFF00, 0xFF}, 0, 12, -1, 3},
    {32, kFields, 0, {0xFF, 0xFF00, 0xFF0000}, 0, 12, -1, -1},
    {32, kFields, 0, {0xFF0000, 0xFF00, 0xFE}, 0, 12, -1, -1},
    {32, 2, 0, {0xFF0000, 0xFF00, 0xFF}, 0, 0, -1, -1},
    {8, 0, 0x1FFFFFFF, {}, 0x1FFFFFFF, 0x7FFFFFFC, -1, -1},
    {8, 0, 0x20000000, {}, 0x20000000, kMost, -1, -1},
    {32, kFields, 0x1FFFFFFD, {0xFF0000, 0xFF00, 0xFF}, 0x1FFFFFFD, kMost, -1, 3},
    {8, 0, 0x40000000, {}, 0x40000000, kMost, -1, -1}, // times four is 0 in 32 bits
    {8, 0, 0x80000000, {}, kMost, kMost, -1, -1},
    {24, 0, 0xFFFFFFFF, {}, kMost, kMost, -1, -1},
    {0, 0, 0, {}, 0, 0, -1, -1},
    {2, 0, 0, {}, 0, 0, -1, -1},
    {0xFFFF, 0, 0, {}, 0, 0, -1, -1},
};

TEST(CompanionBitmapInfo, ReadsHeaders) {
    for (const HeaderCase& expected : kHeaders) {
        MaskedHeader picture = {};
        picture.header.biSize = expected.headerBytes;
        picture.header.biBitCount = expected.bitCount;
        picture.header.biCompression = expected.compression;
        picture.header.biClrUsed = expected.coloursUsed;
        std::memcpy(picture.masks, expected.masks, sizeof picture.masks);
        // A picture may lie at any address.
        std::vector<BYTE> bytes(sizeof picture + 1);
        std::memcpy(bytes.data() + 1, &picture, sizeof picture);
        const void* const address = bytes.data() + 1;

        SCOPED_TRACE("case " + std::to_string(&expected - kHeaders));
        EXPECT_EQ(DibNumColors(address), expected.colours);
        EXPECT_EQ(GetDibPalSize(address), expected.tableBytes);
        EXPECT_EQ(GetBmp16Info(address), expected.layout16);
        EXPECT_EQ(GetBmp32Info(address), expected.layout32);
    }
}

TEST(CompanionBitmapInfo, ReadsNoMasksWhereThereAreNone) {
    for (const WORD bitCount : {WORD{8}, WORD{16}, WORD{24}, WORD{32}}) {
        BITMAPINFOHEADER header = {};
        header.biSize = sizeof header;
        header.biBitCount = bitCount;
        const std::vector<BYTE> bytes(reinterpret_cast<const BYTE*>(&header),
                                      reinterpret_cast<const BYTE*>(&header) + sizeof header);
        EXPECT_EQ(GetBmp16Info(bytes.data()), bitCount == 16 ? 1 : -1);
        EXPECT_EQ(GetBmp32Info(bytes.data()), bitCount == 32 ? 1 : -1);
    }
}

TEST(CompanionBitmapInfo, TakesNull) {
    EXPECT_EQ(DibNumColors(nullptr), 0);
    EXPECT_EQ(GetDibPalSize(nullptr), 0);
    EXPECT_EQ(GetBmp16Info(nullptr), -1);
    EXPECT_EQ(GetBmp32Info(nullptr), -1);
}

// --- Progress owners -------------------------------------------------------------------------------------------------

struct Listener {
    std::vector<int> percents;
    int answer = 1;
    DWORD owner = 0;
};

int QV8API Listen(int percent, void* context) {
    auto* const listener = static_cast<Listener*>(context);
    listener->percents.push_back(percent);
    return listener->answer;
}

TEST(CompanionProgress, ComputesThePercentage) {
    struct Case {
        int current, last, from, to, percent;
    };
    const Case cases[] = {
        {0, 9, 0, 100, 0},
        {9, 9, 0, 100, 100},
        {1, 3, 0, 100, 33},
        {2, 3, 0, 100, 66},
        {5, 10, 30, 70, 50},
        {0, 10, 30, 70, 30},
        {10, 10, 30, 70, 70},
        {1, 2, 100, 0, 50},
        {0, 0, 30, 70, 70},
        {3, 0, 0, 100, 100},
        {1, -1, 0, 60, 60},
        {5, INT_MIN, 0, 100, 100},
        {1, 2, -50, -10, 0},
        {1, 2, 150, 250, 100},
        {INT_MAX, INT_MAX, 0, 100, 100},
        {INT_MAX / 2, INT_MAX, 0, 100, 49},
        {INT_MIN, INT_MAX, 0, 100, 0},
        {INT_MAX, 1, INT_MIN, INT_MAX, 100},
        {INT_MIN, 1, INT_MIN, INT_MAX, 0},
        {INT_MIN, 1, INT_MAX, INT_MIN, 100},
        {INT_MAX, 1, INT_MAX, INT_MIN, 0},
    };
    Listener listener;
    const DWORD owner = AddProgressOwner(Listen, &listener);
    for (const Case& expected : cases) {
        listener.percents.clear();
        EXPECT_NE(PercentProgress(expected.current, expected.last, expected.from, expected.to, owner), 0);
        EXPECT_EQ(listener.percents, std::vector<int>{expected.percent}) << "case " << (&expected - cases);
    }
    RemoveProgressOwner(owner);
}

TEST(CompanionProgress, AsksTheOwnerEveryTime) {
    Listener listener;
    const DWORD owner = AddProgressOwner(Listen, &listener);
    EXPECT_NE(PercentProgress(0, 1000, 0, 100, owner), 0);
    EXPECT_NE(PercentProgress(1, 1000, 0, 100, owner), 0);
    listener.answer = 0;
    EXPECT_EQ(PercentProgress(2, 1000, 0, 100, owner), 0);
    EXPECT_EQ(PercentProgress(3, 1000, 0, 100, owner), 0);
    listener.answer = -1;
    EXPECT_NE(PercentProgress(4, 1000, 0, 100, owner), 0);
    EXPECT_EQ(listener.percents, (std::vector<int>{0, 0, 0, 0, 0}));
    RemoveProgressOwner(owner);
}

TEST(CompanionProgress, KeepsOwnersApart) {
    Listener first;
    Listener second;
    second.answer = 0;
    const DWORD firstOwner = AddProgressOwner(Listen, &first);
    const DWORD secondOwner = AddProgressOwner(Listen, &second);
    EXPECT_GT(firstOwner, 0x80000000);
    EXPECT_GT(secondOwner, firstOwner);
    EXPECT_NE(PercentProgress(1, 10, 0, 100, firstOwner), 0);
    EXPECT_EQ(PercentProgress(2, 10, 0, 100, secondOwner), 0);
    EXPECT_EQ(first.percents, std::vector<int>{10});
    EXPECT_EQ(second.percents, std::vector<int>{20});
    RemoveProgressOwner(firstOwner);
    RemoveProgressOwner(secondOwner);
    EXPECT_GT(AddProgressOwner(Listen, &first), secondOwner);
    RemoveProgressOwner(secondOwner + 1);
}

TEST(CompanionProgress, GoesOnWithoutAnOwner) {
    Listener listener;
    listener.answer = 0;
    const DWORD owner = AddProgressOwner(Listen, &listener);
    RemoveProgressOwner(owner);
    RemoveProgressOwner(owner);
    RemoveProgressOwner(0);
    for (const DWORD unknown : {owner, owner + 1000, DWORD{1}, DWORD{0xFFFF}, DWORD{0xFFFFFFFF}, DWORD{0}}) {
        EXPECT_NE(PercentProgress(1, 2, 0, 100, unknown), 0) << unknown;
    }
    EXPECT_TRUE(listener.percents.empty());
    EXPECT_EQ(AddProgressOwner(nullptr, &listener), 0U);
}

int QV8API ChangeOwners(int percent, void* context) {
    auto* const outer = static_cast<Listener*>(context);
    Listener inner;
    const DWORD innerOwner = AddProgressOwner(Listen, &inner);
    const int answer = PercentProgress(percent, 100, 0, 50, innerOwner);
    RemoveProgressOwner(innerOwner);
    RemoveProgressOwner(outer->owner);
    outer->percents.push_back(inner.percents.at(0));
    return answer;
}

TEST(CompanionProgress, OwnerMayChangeOwnersWhileItIsTold) {
    Listener listener;
    listener.owner = AddProgressOwner(ChangeOwners, &listener);
    EXPECT_NE(PercentProgress(40, 100, 0, 100, listener.owner), 0);
    EXPECT_NE(PercentProgress(60, 100, 0, 100, listener.owner), 0);
    EXPECT_EQ(listener.percents, std::vector<int>{20});
}

int QV8API Count(int, void* context) {
    ++*static_cast<std::atomic<int>*>(context);
    return 1;
}

TEST(CompanionProgress, ThreadsShareAnOwner) {
    constexpr int kReports = 2000;
    std::atomic<int> count = 0;
    const DWORD owner = AddProgressOwner(Count, &count);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([owner] {
            for (int report = 0; report < kReports; ++report) {
                PercentProgress(report, kReports, 0, 100, owner);
                RemoveProgressOwner(AddProgressOwner(Count, nullptr));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    RemoveProgressOwner(owner);
    EXPECT_EQ(count, 4 * kReports);
}

} // namespace
