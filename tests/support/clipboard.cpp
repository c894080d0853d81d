#include "support/clipboard.h"

#include <future>
#include <thread>

namespace test {
namespace {

// A window of another user of the clipboard. It needs no display.
HWND OtherWindow() {
#ifdef _WIN32
    return CreateWindowA("STATIC", "", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
#else
    static int window = 0;
    return &window;
#endif
}

void CloseOtherWindow([[maybe_unused]] HWND window) {
#ifdef _WIN32
    DestroyWindow(window);
#endif
}

// Runs `act` between opening and closing; returns whether the clipboard opened.
bool WithClipboard(HWND window, const std::function<void()>& act) {
    if (OpenClipboard(window) == 0) {
        return false;
    }
    act();
    EXPECT_NE(CloseClipboard(), 0);
    return true;
}

} // namespace

void PutOnClipboard(const Bytes& bytes) {
    const auto put = [&] {
        EXPECT_NE(EmptyClipboard(), 0);
        Block block = MakeBlock(bytes);
        if (SetClipboardData(CF_DIB, block.get()) != nullptr) {
            static_cast<void>(block.release());
        }
    };
    // Another thread of the tests may have it open for a moment.
    bool done = WithClipboard(nullptr, put);
    for (int tries = 0; !done && tries != 10000; ++tries) {
        std::this_thread::yield();
        done = WithClipboard(nullptr, put);
    }
    EXPECT_TRUE(done);
}

Bytes ClipboardContent() {
    Bytes content;
    EXPECT_TRUE(WithClipboard(nullptr, [&] {
        if (const HGLOBAL data = GetClipboardData(CF_DIB)) {
            content = ReadBlock(data);
        }
    }));
    return content;
}

bool ClipboardIsClosed() {
    bool closed = false;
    std::thread([&] {
        const HWND window = OtherWindow();
        EXPECT_NE(window, nullptr);
        closed = WithClipboard(window, [] {});
        CloseOtherWindow(window);
    }).join();
    return closed;
}

void WhileAnotherHasTheClipboard(const std::function<void()>& act) {
    std::promise<void> opened;
    std::promise<void> done;
    std::thread other([&] {
        const HWND window = OtherWindow();
        EXPECT_TRUE(WithClipboard(window, [&] {
            opened.set_value();
            done.get_future().wait();
        }));
        CloseOtherWindow(window);
    });
    opened.get_future().wait();
    act();
    done.set_value();
    other.join();
}

} // namespace test
