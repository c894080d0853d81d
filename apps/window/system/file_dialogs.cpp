#include "system/file_dialogs.h"

#include <algorithm>
#include <cwchar>

#include <commdlg.h>

#include "system/text.h"

namespace {

constexpr std::size_t kRoomForNames = 32768;

std::wstring Filter(UINT id) {
    std::wstring filter = Text(id);
    std::replace(filter.begin(), filter.end(), L'|', L'\0');
    return filter + L'\0';
}

// The ending of the first pattern of the filter in front.
std::wstring EndingOf(const std::wstring& filter, DWORD index) {
    const wchar_t* at = filter.c_str();
    for (DWORD i = 1; i < index; ++i) {
        at += std::wcslen(at) + 1;
        at += std::wcslen(at) + 1;
    }
    const std::wstring patterns = at + std::wcslen(at) + 1;
    return patterns.substr(1, patterns.find(L';') - 1);
}

bool HasEnding(const std::wstring& path) {
    return NameOf(path).find(L'.') != std::wstring::npos;
}

// The filter, counted from 1, that has the ending of the name.
DWORD IndexFor(const std::wstring& filter, const std::wstring& name) {
    const std::size_t dot = name.find_last_of(L'.');
    DWORD index = 1;
    for (const wchar_t* at = filter.c_str(); dot != std::wstring::npos && *at != L'\0'; ++index) {
        at += std::wcslen(at) + 1;
        const std::wstring patterns = std::wstring(at) + L';';
        if (patterns.find(name.substr(dot) + L';') != std::wstring::npos) {
            return index;
        }
        at += std::wcslen(at) + 1;
    }
    return 1;
}

} // namespace

std::vector<std::wstring> AskForFilesToOpen(HWND owner, UINT filter, bool several) {
    const std::wstring filters = Filter(filter);
    std::wstring names(kRoomForNames, L'\0');
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = filters.c_str();
    dialog.lpstrFile = names.data();
    dialog.nMaxFile = static_cast<DWORD>(names.size());
    dialog.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR |
                   (several ? static_cast<DWORD>(OFN_ALLOWMULTISELECT) : 0);
    if (!GetOpenFileNameW(&dialog)) {
        return {};
    }
    // One name, or a folder and the names in it.
    const std::wstring first = names.substr(0, names.find(L'\0'));
    std::vector<std::wstring> chosen;
    for (std::size_t at = first.size() + 1; names[at] != L'\0'; at += std::wcslen(&names[at]) + 1) {
        chosen.push_back(first + L"\\" + &names[at]);
    }
    return chosen.empty() ? std::vector<std::wstring>{first} : chosen;
}

std::wstring AskForFileToSave(HWND owner, UINT filter, const std::wstring& suggested) {
    const std::wstring filters = Filter(filter);
    std::wstring name = suggested;
    name.resize(kRoomForNames, L'\0');
    OPENFILENAMEW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = owner;
    dialog.lpstrFilter = filters.c_str();
    dialog.nFilterIndex = IndexFor(filters, suggested);
    dialog.lpstrFile = name.data();
    dialog.nMaxFile = static_cast<DWORD>(name.size());
    const std::wstring ending = EndingOf(filters, dialog.nFilterIndex);
    dialog.lpstrDefExt = ending.c_str() + 1; // the system asks about what it will be called then
    dialog.Flags = OFN_EXPLORER | OFN_OVERWRITEPROMPT | OFN_HIDEREADONLY | OFN_NOCHANGEDIR | OFN_PATHMUSTEXIST;
    if (!GetSaveFileNameW(&dialog)) {
        return {};
    }
    const std::wstring chosen = name.substr(0, name.find(L'\0'));
    return HasEnding(chosen) ? chosen : chosen + EndingOf(filters, dialog.nFilterIndex);
}
