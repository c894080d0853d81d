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

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#endif

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

// --- The dialog ------------------------------------------------------------------------------------------------------

DWORD_PTR Title(const char* text) {
    return reinterpret_cast<DWORD_PTR>(text);
}

#ifdef _WIN32

// A window of the application, on the thread of the test.
class CompanionDialog : public testing::Test {
protected:
    void SetUp() override {
        window_ = CreateWindowExA(0, "STATIC", "Application", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 10, 10, 300, 200,
                                  nullptr, nullptr, nullptr, nullptr);
        if (window_ == nullptr) {
            EXPECT_FALSE(Open());
            EXPECT_EQ(PercentDlgOpen(0, 0, 0), 0);
            GTEST_SKIP() << "windows cannot be made here";
        }
        previous_ = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrA(window_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&CompanionDialog::Procedure)));
        SetWindowLongPtrA(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    }

    void TearDown() override {
        if (IsWindow(window_)) {
            DestroyWindow(window_);
        }
        MSG message;
        while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        }
    }

    bool Open(const char* title = "Sharpen") {
        return PercentDlgOpen(reinterpret_cast<DWORD_PTR>(window_), Title(title), 0) != 0;
    }

    // The dialogs of this thread, the topmost one first.
    static std::vector<HWND> Dialogs() {
        std::vector<HWND> found;
        for (HWND window = nullptr; (window = FindWindowExA(nullptr, window, "#32770", nullptr)) != nullptr;) {
            if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId()) {
                found.push_back(window);
            }
        }
        return found;
    }

    static std::string Caption(HWND window) {
        char text[100] = {};
        GetWindowTextA(window, text, sizeof text);
        return text;
    }

    // One report, late enough after the one before for messages to be served.
    static int Report(int percent) {
        Sleep(40);
        return PercentProgress(percent, 100, 0, 100, 0);
    }

    DWORD Handle() const {
        return static_cast<DWORD>(reinterpret_cast<DWORD_PTR>(window_));
    }

    __attribute__((force_align_arg_pointer)) static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam,
                                                                               LPARAM lParam) {
        auto* const self = reinterpret_cast<CompanionDialog*>(GetWindowLongPtrA(window, GWLP_USERDATA));
        if (message == RegisterWindowMessageA(QV8_PROGRESS_MESSAGE)) {
            self->told_.push_back(static_cast<int>(wParam));
            return self->answer_;
        }
        if (message == WM_APP + 1) {
            PercentDlgClose();
        }
        if (message == WM_APP) {
            ++self->served_;
            if (self->floods_) {
                PostMessageA(window, WM_APP, 0, 0);
            }
        }
        return CallWindowProcA(self->previous_, window, message, wParam, lParam);
    }

    HWND window_ = nullptr;
    WNDPROC previous_ = nullptr;
    std::vector<int> told_;
    LRESULT answer_ = 0;
    int served_ = 0;
    bool floods_ = false;
};

TEST_F(CompanionDialog, CoversItsOwnerAndShowsThePercentage) {
    SetActiveWindow(window_);
    ASSERT_TRUE(Open());
    EXPECT_FALSE(IsWindowEnabled(window_));
    ASSERT_EQ(Dialogs().size(), 1U);
    const HWND dialog = Dialogs()[0];
    EXPECT_TRUE(IsWindowVisible(dialog));
    EXPECT_EQ(GetWindow(dialog, GW_OWNER), window_);
    EXPECT_EQ(Caption(dialog), "Sharpen 0 %");
    const HWND bar = FindWindowExA(dialog, nullptr, "msctls_progress32", nullptr);
    EXPECT_NE(bar, nullptr);
    EXPECT_NE(PercentProgress(21, 50, 0, 100, 0), 0);
    EXPECT_EQ(Caption(dialog), "Sharpen 42 %");
    EXPECT_EQ(SendMessageA(bar, 0x408 /* PBM_GETPOS */, 0, 0), 42);
    PercentDlgClose();
    EXPECT_TRUE(IsWindowEnabled(window_));
    EXPECT_EQ(GetActiveWindow(), window_);
    EXPECT_TRUE(Dialogs().empty());
}

TEST_F(CompanionDialog, IsCancelledByButtonKeyAndCloseBox) {
    for (const std::string way : {"button", "escape", "close box"}) {
        SCOPED_TRACE(way);
        ASSERT_TRUE(Open());
        EXPECT_NE(Report(1), 0);
        const HWND dialog = Dialogs().at(0);
        const HWND button = GetDlgItem(dialog, IDCANCEL);
        if (way == "button") {
            PostMessageA(button, BM_CLICK, 0, 0);
        } else if (way == "escape") {
            PostMessageA(button, WM_KEYDOWN, VK_ESCAPE, 1);
        } else {
            PostMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
        }
        EXPECT_EQ(Report(1), 0); // the percentage need not change
        EXPECT_EQ(Report(2), 0); // and it stays cancelled
        PercentDlgClose();
        EXPECT_TRUE(IsWindowEnabled(window_));
    }
    ASSERT_TRUE(Open());
    EXPECT_NE(Report(1), 0) << "a new dialog begins anew";
    PercentDlgClose();
}

TEST_F(CompanionDialog, StacksOnOneThread) {
    ASSERT_TRUE(Open("Outer"));
    const HWND outer = Dialogs().at(0);
    ASSERT_TRUE(Open("Inner"));
    ASSERT_EQ(Dialogs().size(), 2U);
    const HWND inner = Dialogs()[0] == outer ? Dialogs()[1] : Dialogs()[0];
    EXPECT_NE(Report(70), 0);
    EXPECT_EQ(Caption(inner), "Inner 70 %");
    EXPECT_EQ(Caption(outer), "Outer 0 %");
    PostMessageA(inner, WM_COMMAND, IDCANCEL, 0);
    EXPECT_EQ(Report(70), 0);
    PercentDlgClose();
    EXPECT_FALSE(IsWindowEnabled(window_)) << "the outer dialog is still open";
    EXPECT_NE(Report(30), 0);
    EXPECT_EQ(Caption(outer), "Outer 30 %");
    PercentDlgClose();
    EXPECT_TRUE(IsWindowEnabled(window_));
    PercentDlgClose(); // one too many is harmless
}

TEST_F(CompanionDialog, LeavesADisabledOwnerDisabled) {
    EnableWindow(window_, FALSE);
    ASSERT_TRUE(Open());
    PercentDlgClose();
    EXPECT_FALSE(IsWindowEnabled(window_));
}

TEST_F(CompanionDialog, TakesAControlOrNothingAsItsOwner) {
    const HWND control =
        CreateWindowExA(0, "EDIT", "", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, window_, nullptr, nullptr, nullptr);
    ASSERT_NE(control, nullptr);
    ASSERT_NE(PercentDlgOpen(reinterpret_cast<DWORD_PTR>(control), 0, 0), 0);
    EXPECT_FALSE(IsWindowEnabled(window_));
    PercentDlgClose();
    EXPECT_TRUE(IsWindowEnabled(window_));
    for (const DWORD_PTR owner :
         {DWORD_PTR{0}, DWORD_PTR{0x12345678}, reinterpret_cast<DWORD_PTR>(GetDesktopWindow())}) {
        ASSERT_NE(PercentDlgOpen(owner, 0, 0), 0);
        EXPECT_EQ(Dialogs().size(), 1U);
        EXPECT_NE(Report(50), 0);
        PercentDlgClose();
    }
}

TEST_F(CompanionDialog, SurvivesTheLossOfItsOwner) {
    ASSERT_TRUE(Open());
    DestroyWindow(window_);
    EXPECT_TRUE(Dialogs().empty());
    EXPECT_EQ(Report(50), 0);
    PercentDlgClose();
}

TEST_F(CompanionDialog, LeavesTheEndOfTheProgramToItsOwnLoop) {
    ASSERT_TRUE(Open());
    PostQuitMessage(17);
    EXPECT_EQ(Report(50), 0);
    PercentDlgClose();
    MSG message = {};
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE) && message.message != WM_QUIT) {
    }
    EXPECT_EQ(message.message, static_cast<UINT>(WM_QUIT));
    EXPECT_EQ(message.wParam, 17U);
}

TEST_F(CompanionDialog, ServesTheWindowsOfTheThreadButNotForEver) {
    ASSERT_TRUE(Open());
    PostMessageA(window_, WM_APP, 0, 0);
    EXPECT_NE(Report(10), 0);
    EXPECT_EQ(served_, 1);
    floods_ = true;
    PostMessageA(window_, WM_APP, 0, 0);
    EXPECT_NE(Report(20), 0);
    EXPECT_GT(served_, 1);
    floods_ = false;
    PercentDlgClose();
}

TEST_F(CompanionDialog, IsNotClosedByTheMessagesItServes) {
    ASSERT_TRUE(Open());
    PostMessageA(window_, WM_APP + 1, 0, 0);
    EXPECT_NE(Report(10), 0);
    EXPECT_EQ(Dialogs().size(), 1U);
    PercentDlgClose();
    EXPECT_TRUE(Dialogs().empty());
}

TEST_F(CompanionDialog, WindowIsToldAndCancels) {
    EXPECT_NE(PercentProgress(1, 4, 0, 100, Handle()), 0);
    answer_ = 1;
    EXPECT_NE(PercentProgress(2, 4, 0, 100, Handle()), 0);
    answer_ = QV8_PROGRESS_CANCEL;
    EXPECT_EQ(PercentProgress(3, 4, 0, 100, Handle()), 0);
    EXPECT_EQ(told_, (std::vector<int>{25, 50, 75}));
    EXPECT_TRUE(Dialogs().empty());
    DestroyWindow(window_);
    EXPECT_NE(PercentProgress(4, 4, 0, 100, Handle()), 0);
}

#else

// Standard error on a pseudo-terminal, for as long as this lives.
class Terminal {
public:
    Terminal() : master_(posix_openpt(O_RDWR | O_NOCTTY)), saved_(dup(STDERR_FILENO)) {
        if (master_ >= 0 && grantpt(master_) == 0 && unlockpt(master_) == 0) {
            const int slave = open(ptsname(master_), O_RDWR | O_NOCTTY);
            isOpen_ = slave >= 0 && dup2(slave, STDERR_FILENO) >= 0;
            close(slave);
        }
    }
    ~Terminal() {
        dup2(saved_, STDERR_FILENO);
        close(saved_);
        close(master_);
    }
    bool IsOpen() const {
        return isOpen_;
    }
    // What was written since the last call.
    std::string Written() const {
        std::string text;
        char part[256];
        fcntl(master_, F_SETFL, O_NONBLOCK);
        for (ssize_t size = 0; (size = read(master_, part, sizeof part)) > 0;) {
            text.append(part, static_cast<std::size_t>(size));
        }
        return text;
    }

private:
    int master_;
    int saved_;
    bool isOpen_ = false;
};

bool Contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

TEST(CompanionDialog, IsALineOnATerminal) {
    const Terminal terminal;
    if (!terminal.IsOpen()) {
        GTEST_SKIP() << "no terminal can be made here";
    }
    ASSERT_NE(PercentDlgOpen(0, Title("Sharpen\x1B[2J"), 0), 0);
    EXPECT_TRUE(Contains(terminal.Written(), "\rSharpen [2J [--------------------] 0 %"));
    EXPECT_NE(PercentProgress(21, 50, 0, 100, 0), 0);
    EXPECT_TRUE(Contains(terminal.Written(), "\rSharpen [2J [########------------] 42 %"));
    EXPECT_NE(PercentProgress(424, 1000, 0, 100, 0), 0);
    EXPECT_EQ(terminal.Written(), "") << "written again only when the whole percentage changes";
    ASSERT_NE(PercentDlgOpen(0, 0, 0), 0);
    EXPECT_TRUE(Contains(terminal.Written(), "] 0 %"));
    PercentDlgClose();
    terminal.Written();
    EXPECT_NE(PercentProgress(100, 100, 0, 100, 0), 0);
    EXPECT_TRUE(Contains(terminal.Written(), "\rSharpen [2J [####################] 100 %"));
    PercentDlgClose();
    EXPECT_EQ(terminal.Written(), "\r\x1B[K");
    PercentDlgClose(); // one too many is harmless
    EXPECT_NE(PercentProgress(1, 2, 0, 100, 0), 0);
    EXPECT_EQ(terminal.Written(), "");
}

TEST(CompanionDialog, IsSilentElsewhere) {
    testing::internal::CaptureStderr();
    EXPECT_NE(PercentDlgOpen(0, Title("Sharpen"), 0), 0);
    EXPECT_NE(PercentProgress(1, 2, 0, 100, 0), 0);
    PercentDlgClose();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

#endif

} // namespace
