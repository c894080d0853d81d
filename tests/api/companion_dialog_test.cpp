// The companion's progress dialog: a window on Windows, a line on a terminal elsewhere.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "qv8com.h"
#include "qv8effect.h"

#ifndef _WIN32
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#endif

namespace {

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
            EXPECT_TRUE(Open()); // the work is done without it
            EXPECT_NE(Show(1), 0);
            PercentDlgClose();
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

    // The first report that is late enough for the dialog to be seen.
    static int Show(int percent = 0) {
        Sleep(250);
        return PercentProgress(percent, 100, 0, 100, 0);
    }

    bool OpenAndShow(const char* title = "Sharpen") {
        return Open(title) && Show() != 0;
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

    // One report, late enough after the one before for messages to be served, where windows are slow too.
    static int Report(int percent) {
        Sleep(250);
        return PercentProgress(percent, 100, 0, 100, 0);
    }

    DWORD Handle() const {
        return static_cast<DWORD>(reinterpret_cast<DWORD_PTR>(window_));
    }

    QV8_REALIGN static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        auto* const self = reinterpret_cast<CompanionDialog*>(GetWindowLongPtrA(window, GWLP_USERDATA));
        if (message == RegisterWindowMessageA(QV8_PROGRESS_MESSAGE)) {
            self->told_.push_back(static_cast<int>(wParam));
            return self->answer_;
        }
        if (message == WM_APP + 1) {
            PercentDlgClose();
        }
        if (self->callsLibrary_) {
            GlobalFree(QV8CreateImage(4, 4, 24, 1, 2, 3, 0, 0, 0, 0));
            self->made_ += GetErrorStatus() == QV8_STATUS_SUCCESS ? 1 : 0;
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
    bool callsLibrary_ = false;
    int made_ = 0; // pictures, by those calls
};

TEST_F(CompanionDialog, CoversItsOwnerAndShowsThePercentage) {
    SetActiveWindow(window_);
    ASSERT_TRUE(Open());
    PostMessageA(window_, WM_APP, 0, 0);
    EXPECT_NE(PercentProgress(1, 50, 0, 100, 0), 0);
    EXPECT_TRUE(IsWindowEnabled(window_)) << "short work is done without a window";
    EXPECT_TRUE(Dialogs().empty());
    EXPECT_EQ(served_, 0);
    EXPECT_NE(Show(2), 0);
    EXPECT_FALSE(IsWindowEnabled(window_));
    ASSERT_EQ(Dialogs().size(), 1U);
    const HWND dialog = Dialogs()[0];
    EXPECT_TRUE(IsWindowVisible(dialog));
    EXPECT_EQ(GetWindow(dialog, GW_OWNER), window_);
    EXPECT_EQ(Caption(dialog), "Sharpen 2 %");
    const HWND bar = FindWindowExA(dialog, nullptr, "msctls_progress32", nullptr);
    EXPECT_NE(bar, nullptr);
    EXPECT_NE(PercentProgress(21, 50, 0, 100, 0), 0);
    EXPECT_EQ(Caption(dialog), "Sharpen 2 %") << "not so soon";
    EXPECT_NE(Report(42), 0);
    EXPECT_EQ(Caption(dialog), "Sharpen 42 %");
    EXPECT_EQ(SendMessageA(bar, 0x408 /* PBM_GETPOS */, 0, 0), 42);
    PercentDlgClose();
    EXPECT_TRUE(IsWindowEnabled(window_));
    EXPECT_EQ(GetActiveWindow(), window_);
    EXPECT_TRUE(Dialogs().empty());
}

TEST_F(CompanionDialog, LiesInTheMiddleOfItsOwnerButOnTheScreen) {
    struct Place {
        int left, top;
        bool isInside;
    };
    for (const Place place : {Place{330, 250, true}, Place{-600, -400, false}, Place{5000, 5000, false}}) {
        SetWindowPos(window_, nullptr, place.left, place.top, 400, 300, SWP_NOZORDER);
        ASSERT_TRUE(OpenAndShow());
        RECT dialog = {};
        GetWindowRect(Dialogs().at(0), &dialog);
        if (place.isInside) {
            EXPECT_NEAR((dialog.left + dialog.right) / 2, place.left + 200, 1);
            EXPECT_NEAR((dialog.top + dialog.bottom) / 2, place.top + 150, 1);
        }
        EXPECT_TRUE(dialog.left >= 0 && dialog.top >= 0 && dialog.right <= GetSystemMetrics(SM_CXSCREEN) &&
                    dialog.bottom <= GetSystemMetrics(SM_CYSCREEN));
        PercentDlgClose();
    }
}

// A window hears that it is enabled again while the dialog goes, and calls the library.
TEST_F(CompanionDialog, KeepsTheStatusOfTheCallThatEnds) {
    ASSERT_TRUE(OpenAndShow());
    SetErrorStatus(QV8_STATUS_CANCELLED);
    callsLibrary_ = true;
    PercentDlgClose();
    callsLibrary_ = false;
    EXPECT_GT(made_, 0);
    EXPECT_EQ(GetErrorStatus(), QV8_STATUS_CANCELLED);
}

TEST_F(CompanionDialog, IsCancelledByButtonKeyAndCloseBox) {
    for (const std::string way : {"button", "escape", "close box"}) {
        SCOPED_TRACE(way);
        ASSERT_TRUE(OpenAndShow());
        const HWND dialog = Dialogs().at(0);
        const HWND button = GetDlgItem(dialog, IDCANCEL);
        if (way == "button") {
            PostMessageA(button, BM_CLICK, 0, 0);
        } else if (way == "escape") {
            PostMessageA(button, WM_KEYDOWN, VK_ESCAPE, 1);
        } else {
            PostMessageA(dialog, WM_SYSCOMMAND, SC_CLOSE, 0);
        }
        EXPECT_EQ(Report(0), 0); // the percentage need not change
        EXPECT_EQ(Report(2), 0); // and it stays cancelled
        PercentDlgClose();
        EXPECT_TRUE(IsWindowEnabled(window_));
    }
    ASSERT_TRUE(Open());
    EXPECT_NE(Show(1), 0) << "a new dialog begins anew";
    PercentDlgClose();
}

TEST_F(CompanionDialog, StacksOnOneThread) {
    ASSERT_TRUE(OpenAndShow("Outer"));
    const HWND outer = Dialogs().at(0);
    ASSERT_TRUE(OpenAndShow("Inner"));
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
    ASSERT_TRUE(OpenAndShow());
    PercentDlgClose();
    EXPECT_FALSE(IsWindowEnabled(window_));
}

TEST_F(CompanionDialog, TakesAControlOrNothingAsItsOwner) {
    const HWND control =
        CreateWindowExA(0, "EDIT", "", WS_CHILD | WS_VISIBLE, 0, 0, 50, 20, window_, nullptr, nullptr, nullptr);
    ASSERT_NE(control, nullptr);
    ASSERT_NE(PercentDlgOpen(reinterpret_cast<DWORD_PTR>(control), 0, 0), 0);
    EXPECT_NE(Show(), 0);
    EXPECT_FALSE(IsWindowEnabled(window_));
    PercentDlgClose();
    EXPECT_TRUE(IsWindowEnabled(window_));
    for (const DWORD_PTR owner :
         {DWORD_PTR{0}, DWORD_PTR{0x12345678}, reinterpret_cast<DWORD_PTR>(GetDesktopWindow())}) {
        ASSERT_NE(PercentDlgOpen(owner, 0, 0), 0);
        EXPECT_NE(Show(), 0);
        EXPECT_EQ(Dialogs().size(), 1U);
        EXPECT_NE(Report(50), 0);
        PercentDlgClose();
    }
}

TEST_F(CompanionDialog, SurvivesTheLossOfItsOwner) {
    ASSERT_TRUE(OpenAndShow());
    DestroyWindow(window_);
    EXPECT_TRUE(Dialogs().empty());
    EXPECT_EQ(Report(50), 0);
    PercentDlgClose();
}

TEST_F(CompanionDialog, LeavesTheEndOfTheProgramToItsOwnLoop) {
    ASSERT_TRUE(OpenAndShow());
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
    ASSERT_TRUE(OpenAndShow());
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
    ASSERT_TRUE(OpenAndShow());
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
