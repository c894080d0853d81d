#include "application.h"

#include <commctrl.h>
#include <psapi.h>
#include <winternl.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

namespace {

std::filesystem::path ProgramBeside() {
    std::array<wchar_t, MAX_PATH> name{};
    GetModuleFileNameW(nullptr, name.data(), static_cast<DWORD>(name.size()));
    return std::filesystem::path(name.data()).replace_filename(L"qv8window.exe");
}

// A window of the process that fits.
HWND FindOf(DWORD process, const std::function<bool(HWND)>& fits) {
    for (HWND window = nullptr; (window = FindWindowExW(nullptr, window, nullptr, nullptr)) != nullptr;) {
        DWORD owner = 0;
        GetWindowThreadProcessId(window, &owner);
        if (owner == process && fits(window)) {
            return window;
        }
    }
    return nullptr;
}

std::wstring ClassOf(HWND window) {
    std::array<wchar_t, 64> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return name.data();
}

// All windows inside of a window.
std::vector<HWND> ControlsIn(HWND window) {
    std::vector<HWND> found;
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        found.push_back(child);
        const std::vector<HWND> inside = ControlsIn(child);
        found.insert(found.end(), inside.begin(), inside.end());
    }
    return found;
}

// Wine does not count the objects of a process, but its table of them can be read: 24 bytes each, the type at 14.
int GdiObjectsInTable(HANDLE process) {
    constexpr std::size_t kTableInProcessBlock = 0x94;
    constexpr std::size_t kEntries = 0x4000;
    struct Entry {
        std::uint64_t object;
        std::uint32_t owner;
        std::uint16_t unique;
        std::uint8_t type;
        std::uint8_t flags;
        std::uint64_t user;
    };
    PROCESS_BASIC_INFORMATION information{};
    NtQueryInformationProcess(process, ProcessBasicInformation, &information, sizeof information, nullptr);
    const auto* const block = reinterpret_cast<const BYTE*>(information.PebBaseAddress);
    const void* table = nullptr;
    std::vector<Entry> entries(kEntries);
    SIZE_T size = 0;
    ReadProcessMemory(process, block + kTableInProcessBlock, &table, sizeof table, &size);
    ReadProcessMemory(process, table, entries.data(), entries.size() * sizeof(Entry), &size);
    return static_cast<int>(
        std::count_if(entries.begin(), entries.end(), [](const Entry& entry) { return entry.type != 0; }));
}

// Wine gives new objects the places of old ones, so the highest place of many new ones tells how many there are.
int HighestUserHandle() {
    std::array<HMENU, 400> menus{};
    int highest = 0;
    for (HMENU& menu : menus) {
        menu = CreateMenu();
        highest = std::max(highest, static_cast<int>(reinterpret_cast<UINT_PTR>(menu) & 0xFFFF));
    }
    std::for_each(menus.begin(), menus.end(), DestroyMenu);
    return highest;
}

} // namespace

Application::Application(const std::wstring& arguments) {
    const std::wstring program = ProgramBeside().wstring();
    std::wstring line = L"\"" + program + L"\" " + arguments;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION made{};
    if (CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &made) ==
        0) {
        return;
    }
    CloseHandle(made.hThread);
    process_ = made.hProcess;
    processId_ = made.dwProcessId;
    WaitFor([this] {
        window_ = FindOf(processId_, [](HWND w) { return ClassOf(w) == QV8WINDOW_CLASS && IsWindowVisible(w) != 0; });
        return window_ != nullptr || !IsRunning();
    });
}

Application::~Application() {
    if (process_ != nullptr) {
        TerminateProcess(process_, 1);
        WaitForSingleObject(process_, INFINITE); // or the next one would hand its files to this one
        CloseHandle(process_);
    }
}

bool Application::WaitFor(const std::function<bool()>& condition, int milliseconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        Sleep(2);
    }
    return true;
}

std::optional<LRESULT> Application::Send(UINT message, WPARAM wParam, LPARAM lParam) const {
    constexpr UINT kPatience = 60000; // where many programs share a processor
    DWORD_PTR answer = 0;
    const LRESULT answered = SendMessageTimeoutW(window_, message, wParam, lParam, SMTO_NORMAL, kPatience, &answer);
    return answered != 0 ? std::optional(static_cast<LRESULT>(answer)) : std::nullopt;
}

bool Application::Hand(ULONG_PTR what, const std::filesystem::path& name) const {
    std::wstring text = name.wstring();
    COPYDATASTRUCT data{what, static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)), text.data()};
    return Send(WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data)) == 1 && WaitUntilIdle();
}

bool Application::WaitUntilIdle(int milliseconds) const {
    return WaitFor([this] { return State(QV8WINDOW_IS_BUSY) == 0; }, milliseconds);
}

void Application::Type(HWND edit, const std::wstring& text) const {
    SendMessageW(edit, EM_SETSEL, 0, -1);
    SendMessageW(edit, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
}

bool Application::Choose(HWND list, const std::wstring& text) const {
    const LRESULT found =
        SendMessageW(list, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(text.c_str()));
    SendMessageW(list, CB_SETCURSEL, static_cast<WPARAM>(found), 0);
    SendMessageW(GetParent(list), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(list));
    return found != CB_ERR;
}

HWND Application::Control(int id) const {
    const std::vector<HWND> controls = ControlsIn(window_);
    const auto found =
        std::find_if(controls.begin(), controls.end(), [id](HWND control) { return GetDlgCtrlID(control) == id; });
    return found == controls.end() ? nullptr : *found;
}

std::wstring Application::TextOf(HWND control) {
    std::array<wchar_t, 1000> text{};
    SendMessageW(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    return text.data();
}

// The system carries texts of its own messages from process to process, but not those of common controls.
std::wstring Application::Status(int part) const {
    std::array<wchar_t, 500> text{};
    void* const there = VirtualAllocEx(process_, nullptr, sizeof text, MEM_COMMIT, PAGE_READWRITE);
    SendMessageW(Control(IDC_STATUS), SB_GETTEXTW, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(there));
    ReadProcessMemory(process_, there, text.data(), sizeof text - sizeof(wchar_t), nullptr);
    VirtualFreeEx(process_, there, 0, MEM_RELEASE);
    return text.data();
}

HWND Application::Dialog() const {
    return FindOf(processId_, [](HWND window) { return ClassOf(window) == L"#32770" && IsWindowVisible(window) != 0; });
}

Holdings Application::Holds() const {
    Holdings holdings;
    holdings.gdiObjects = static_cast<int>(GetGuiResources(process_, GR_GDIOBJECTS));
    holdings.userHandles = static_cast<int>(GetGuiResources(process_, GR_USEROBJECTS));
    if (holdings.gdiObjects == 0) {
        holdings.gdiObjects = GdiObjectsInTable(process_);
        holdings.userHandles = HighestUserHandle();
    }
    holdings.windows = static_cast<int>(ControlsIn(window_).size());
    PROCESS_MEMORY_COUNTERS_EX memory{};
    GetProcessMemoryInfo(process_, reinterpret_cast<PROCESS_MEMORY_COUNTERS*>(&memory), sizeof memory);
    holdings.megabytes = static_cast<double>(std::max(memory.PrivateUsage, memory.PagefileUsage)) / (1 << 20);
    return holdings;
}

Pinger::Pinger(HWND window)
    : thread_([this, window] {
          while (!ends_) {
              const auto start = std::chrono::steady_clock::now();
              DWORD_PTR answer = 0;
              SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 60000, &answer);
              const double passed = Milliseconds(std::chrono::steady_clock::now() - start).count();
              longest_ = std::max(longest_.load(), passed);
              Sleep(5);
          }
      }) {}

Pinger::~Pinger() {
    ends_ = true;
    thread_.join();
}
