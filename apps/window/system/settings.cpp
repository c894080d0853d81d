#include "system/settings.h"

#include <cstring>

namespace {

constexpr const wchar_t* kFolder = L"Software\\Qv8Effect\\Window";
constexpr const wchar_t* kPlace = L"Place";
constexpr const wchar_t* kPanelWidth = L"PanelWidth";
constexpr const wchar_t* kMegabytes = L"UndoMegabytes";
constexpr const wchar_t* kPreview = L"Preview";
constexpr const wchar_t* kDivider = L"Divider";
constexpr const wchar_t* kRecent = L"Recent";

// A key, open or missing, which closes at the end of its life.
class Key {
public:
    Key() {
        RegCreateKeyExW(HKEY_CURRENT_USER, kFolder, 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key_, nullptr);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    ~Key() {
        if (key_ != nullptr) {
            RegCloseKey(key_);
        }
    }

    std::vector<BYTE> Get(const wchar_t* name, DWORD type) const {
        DWORD found = 0;
        DWORD size = 0;
        if (RegQueryValueExW(key_, name, nullptr, &found, nullptr, &size) != ERROR_SUCCESS || found != type) {
            return {};
        }
        std::vector<BYTE> bytes(size);
        return RegQueryValueExW(key_, name, nullptr, &found, bytes.data(), &size) == ERROR_SUCCESS
                   ? bytes
                   : std::vector<BYTE>();
    }
    template <class Type>
    void Get(const wchar_t* name, DWORD type, Type& value) const {
        const std::vector<BYTE> bytes = Get(name, type);
        if (bytes.size() == sizeof value) {
            std::memcpy(&value, bytes.data(), sizeof value);
        }
    }
    void Set(const wchar_t* name, DWORD type, const void* bytes, std::size_t size) const {
        RegSetValueExW(key_, name, 0, type, static_cast<const BYTE*>(bytes), static_cast<DWORD>(size));
    }
    void SetNumber(const wchar_t* name, DWORD number) const {
        Set(name, REG_DWORD, &number, sizeof number);
    }
    bool GetFlag(const wchar_t* name, bool otherwise) const {
        DWORD number = otherwise ? 1 : 0;
        Get(name, REG_DWORD, number);
        return number != 0;
    }

private:
    HKEY key_ = nullptr;
};

} // namespace

Settings LoadSettings() {
    const Key key;
    Settings settings;
    key.Get(kPlace, REG_BINARY, settings.place);
    if (settings.place.length != sizeof settings.place) {
        settings.place = {};
    }
    key.Get(kPanelWidth, REG_DWORD, settings.panelWidth);
    key.Get(kMegabytes, REG_DWORD, settings.megabytes);
    settings.preview = key.GetFlag(kPreview, settings.preview);
    settings.divider = key.GetFlag(kDivider, settings.divider);
    const std::vector<BYTE> names = key.Get(kRecent, REG_MULTI_SZ);
    std::wstring text(names.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), names.data(), text.size() * sizeof(wchar_t));
    for (std::size_t at = 0; at < text.size() && text[at] != L'\0'; at = text.find(L'\0', at) + 1) {
        settings.recent.emplace_back(text.c_str() + at);
        if (text.find(L'\0', at) == std::wstring::npos) {
            break;
        }
    }
    return settings;
}

void SaveSettings(const Settings& settings) {
    const Key key;
    key.Set(kPlace, REG_BINARY, &settings.place, sizeof settings.place);
    key.SetNumber(kPanelWidth, settings.panelWidth);
    key.SetNumber(kMegabytes, settings.megabytes);
    key.SetNumber(kPreview, settings.preview ? 1 : 0);
    key.SetNumber(kDivider, settings.divider ? 1 : 0);
    std::wstring names;
    for (const std::wstring& name : settings.recent) {
        names += name + L'\0';
    }
    names += L'\0';
    key.Set(kRecent, REG_MULTI_SZ, names.data(), names.size() * sizeof(wchar_t));
}
