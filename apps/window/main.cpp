// Entry of the window: one program for all pictures, which a second start hands its files to.
#include <memory>
#include <string>
#include <vector>

#include <qv8platform.h>

#include <commctrl.h>
#include <shellapi.h>

#include "commands.h"
#include "main_window.h"
#include "system/screen.h"
#include "system/text.h"
#include "texts.h"

namespace {

// As full paths: the first start may stand in another folder.
std::vector<std::wstring> FilesOfCommandLine() {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::wstring> files;
    for (int i = 1; words != nullptr && i < count; ++i) {
        std::wstring path(32768, L'\0');
        path.resize(GetFullPathNameW(words[i], static_cast<DWORD>(path.size()), path.data(), nullptr));
        files.push_back(path);
    }
    LocalFree(words);
    return files;
}

// Whether there was a window to take them.
bool HandOver(const std::vector<std::wstring>& files) {
    const HWND first = FindWindowW(QV8WINDOW_CLASS, nullptr);
    if (first == nullptr) {
        return false;
    }
    std::wstring names;
    for (const std::wstring& file : files) {
        names += file + L'\0';
    }
    COPYDATASTRUCT data = {QV8WINDOW_OPEN, static_cast<DWORD>(names.size() * sizeof(wchar_t)), names.data()};
    DWORD_PTR answer = 0;
    constexpr UINT kPatience = 5000;
    SetForegroundWindow(first);
    return SendMessageTimeoutW(first, WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&data), SMTO_ABORTIFHUNG, kPatience,
                               &answer) != 0;
}

int RunMessages(MainWindow& window) {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (!window.TakeKey(message)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return static_cast<int>(message.wParam);
}

} // namespace

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int nShowCmd) {
    BecomeAwareOfDots();
    const std::vector<std::wstring> files = FilesOfCommandLine();
    if (HandOver(files)) {
        return 0;
    }
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_BAR_CLASSES | ICC_TAB_CLASSES | ICC_TREEVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    try {
        MainWindow window;
        window.Show(nShowCmd);
        window.OpenFiles(files);
        return RunMessages(window);
    } catch (const std::bad_alloc&) {
        MessageBoxW(nullptr, Text(IDS_OUT_OF_MEMORY).c_str(), Text(IDS_TITLE).c_str(), MB_OK | MB_ICONERROR);
        return 1;
    }
}
