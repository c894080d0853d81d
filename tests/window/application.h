// The window application as another process, used as a person would use it.
#ifndef QV8_TEST_WINDOW_APPLICATION_H
#define QV8_TEST_WINDOW_APPLICATION_H

#include <windows.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include "apps/window/commands.h"

using Milliseconds = std::chrono::duration<double, std::milli>;

// What a process holds.
struct Holdings {
    int gdiObjects = 0;
    int windows = 0;
    int userHandles =
        0; // the highest place in the system's table that a new object gets, where objects are not counted
    double megabytes = 0;
};

class Application {
public:
    // Starts it with the rest of a command line, and waits for its window.
    explicit Application(const std::wstring& arguments = {});
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;
    ~Application(); // ends the process if it still runs

    HWND Window() const {
        return window_;
    }
    bool IsRunning() const {
        return WaitForSingleObject(process_, 0) == WAIT_TIMEOUT;
    }
    // What the window answers; nothing when it does not, as behind a message box.
    std::optional<LRESULT> Send(UINT message, WPARAM wParam, LPARAM lParam) const;
    // As a menu, a key of the accelerator table or a button sends it; returns when the work that it began has ended.
    bool Command(int id) const {
        return Send(WM_COMMAND, static_cast<WPARAM>(id), 0).has_value() && WaitUntilIdle();
    }
    // Hands it names, and waits until the work with them is done. Returns whether it took them.
    bool Hand(ULONG_PTR what, const std::filesystem::path& name) const;

    LRESULT State(WPARAM what) const {
        return Send(QV8WINDOW_STATE, what, 0).value_or(-1);
    }
    HWND Control(int id) const;
    HWND Part(int parameter, int part) const {
        return Control(IDC_PARAMETER_FIRST + parameter * IDC_PARAMETER_STRIDE + part);
    }
    // What a person does with the control of a parameter: types, chooses, ticks.
    void Type(HWND edit, const std::wstring& text) const;
    bool Choose(HWND list, const std::wstring& text) const;
    // The text of a control that others may ask for it.
    static std::wstring TextOf(HWND control);
    std::wstring Title() const {
        return TextOf(window_);
    }
    std::wstring Status(int part) const;

    // Another dialog that it shows in front of its window, or null.
    HWND Dialog() const;

    // Until no work is under way, previews included.
    bool WaitUntilIdle(int milliseconds = 60000) const;
    static bool WaitFor(const std::function<bool()>& condition, int milliseconds = 60000);

    Holdings Holds() const;

private:
    HANDLE process_ = nullptr;
    DWORD processId_ = 0;
    HWND window_ = nullptr;
};

// Asks a window again and again whether it answers, as long as this lives.
class Pinger {
public:
    explicit Pinger(HWND window);
    Pinger(const Pinger&) = delete;
    Pinger& operator=(const Pinger&) = delete;
    ~Pinger();

    double LongestMilliseconds() const {
        return longest_;
    }

private:
    std::atomic<bool> ends_{false};
    std::atomic<double> longest_{0};
    std::thread thread_;
};

#endif
