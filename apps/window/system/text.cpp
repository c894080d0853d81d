#include "system/text.h"

#include <array>

std::wstring Wide(const std::string& utf8) {
    const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), nullptr, 0);
    std::wstring text(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), text.data(), length);
    return text;
}

std::string Utf8(const std::wstring& text) {
    const int size =
        WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0, nullptr, nullptr);
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), utf8.data(), size, nullptr, nullptr);
    return utf8;
}

std::wstring Text(UINT id, std::initializer_list<std::wstring> words) {
    std::array<wchar_t, 1024> buffer{};
    const int length = LoadStringW(GetModuleHandleW(nullptr), id, buffer.data(), static_cast<int>(buffer.size()));
    std::wstring text;
    for (int i = 0; i < length; ++i) {
        const wchar_t next = i + 1 < length ? buffer[static_cast<std::size_t>(i) + 1] : L'\0';
        const auto number = static_cast<std::size_t>(next - L'1');
        if (buffer[static_cast<std::size_t>(i)] == L'%' && next >= L'1' && number < words.size()) {
            text += words.begin()[number];
            ++i;
        } else {
            text += buffer[static_cast<std::size_t>(i)];
        }
    }
    return text;
}

std::wstring TextOfWindow(HWND window) {
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

std::wstring NameOf(const std::wstring& path) {
    const std::size_t slash = path.find_last_of(L"\\/");
    return slash == std::wstring::npos ? path : path.substr(slash + 1);
}
