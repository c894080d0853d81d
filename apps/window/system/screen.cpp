#include "system/screen.h"

#include <cstring>

namespace {

// A function of a newer system, or null.
template <class Function>
Function Newer(const wchar_t* library, const char* name) {
    const HMODULE module = GetModuleHandleW(library) != nullptr ? GetModuleHandleW(library) : LoadLibraryW(library);
    const FARPROC found = module != nullptr ? GetProcAddress(module, name) : nullptr;
    Function function = nullptr;
    static_assert(sizeof function == sizeof found);
    std::memcpy(&function, &found, sizeof function);
    return function;
}

int DotsOf(HWND window) {
    static const auto ofWindow = Newer<UINT(WINAPI*)(HWND)>(L"user32.dll", "GetDpiForWindow");
    const UINT dots = ofWindow != nullptr ? ofWindow(window) : 0;
    return dots != 0 ? static_cast<int>(dots) : GetDeviceCaps(WindowDevice(nullptr).Get(), LOGPIXELSY);
}

bool UserWantsDark() {
    DWORD light = 1;
    DWORD size = sizeof light;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize", 0,
                      KEY_READ, &key) != ERROR_SUCCESS) {
        return false;
    }
    const bool known =
        RegQueryValueExW(key, L"AppsUseLightTheme", nullptr, nullptr, reinterpret_cast<BYTE*>(&light), &size) == 0;
    RegCloseKey(key);
    return known && light == 0;
}

} // namespace

Dots::Dots(HWND window) : perInch_(DotsOf(window)) {}

GdiObject<HFONT> MessageFont(const Dots& dots) {
    NONCLIENTMETRICSW metrics = {};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, metrics.cbSize, &metrics, 0);
    const int systemDots = GetDeviceCaps(WindowDevice(nullptr).Get(), LOGPIXELSY);
    metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dots.PerInch(), systemDots);
    return GdiObject<HFONT>(CreateFontIndirectW(&metrics.lfMessageFont));
}

void UseDarkTitle(HWND window) {
    using SetAttribute = HRESULT(WINAPI*)(HWND, DWORD, const void*, DWORD);
    constexpr DWORD kUseDarkMode = 20;
    static const auto set = Newer<SetAttribute>(L"dwmapi.dll", "DwmSetWindowAttribute");
    if (set != nullptr) {
        const BOOL dark = UserWantsDark() ? TRUE : FALSE;
        set(window, kUseDarkMode, &dark, sizeof dark);
    }
}

void BecomeAwareOfDots() {
    using SetContext = BOOL(WINAPI*)(void*);
    const auto setContext = Newer<SetContext>(L"user32.dll", "SetProcessDpiAwarenessContext");
    void* const perMonitorV2 = reinterpret_cast<void*>(static_cast<INT_PTR>(-4));
    if (setContext != nullptr && setContext(perMonitorV2)) {
        return;
    }
    if (const auto setAware = Newer<BOOL(WINAPI*)()>(L"user32.dll", "SetProcessDPIAware"); setAware != nullptr) {
        setAware();
    }
}
