// What the window says about itself: menus, title, status line and messages.
#include "main_window.h"

#include <cmath>
#include <map>
#include <vector>

#include <commctrl.h>

#include "catalogue/effect.h"
#include "commands.h"
#include "texts.h"

namespace {

constexpr UINT kEffectsMenu = 3; // places in the menu
constexpr UINT kFileMenu = 0;
constexpr UINT kRecentPlace = 5;
constexpr std::uint64_t kMegabyte = 1 << 20;

std::wstring Number(double number) {
    return std::to_wstring(std::lround(number));
}

bool IsBetween(UINT id, UINT first, UINT last) {
    return id >= first && id <= last;
}

std::wstring LayoutName(const LockedPicture& picture) {
    switch (picture.Header().biBitCount) {
    case 16: {
        const int layout = GetBmp16Info(picture.Bytes());
        return layout == 2 ? L"5-6-5" : layout == -1 ? L"?" : L"5-5-5";
    }
    case 24:
        return L"BGR";
    case 32:
        return GetBmp32Info(picture.Bytes()) == -1 ? L"?" : L"BGRX";
    default:
        return std::to_wstring(picture.TableEntries()) + L" colours";
    }
}

} // namespace

void MainWindow::MakeMenus() {
    const HMENU effects = GetSubMenu(GetMenu(window_), kEffectsMenu);
    std::map<catalogue::Family, HMENU> families;
    UINT id = ID_EFFECT_FIRST;
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        auto family = families.find(effect.family);
        if (family == families.end()) {
            family = families.emplace(effect.family, CreatePopupMenu()).first;
            AppendMenuW(effects, MF_POPUP, reinterpret_cast<UINT_PTR>(family->second),
                        Wide(catalogue::FamilyName(effect.family)).c_str());
        }
        AppendMenuW(family->second, MF_STRING, id++, Wide(TitleOf(effect.name)).c_str());
    }
}

void MainWindow::UpdateMenu(HMENU menu) {
    if (menu == GetSubMenu(GetSubMenu(GetMenu(window_), kFileMenu), static_cast<int>(kRecentPlace))) {
        FillRecent(menu);
    }
    const Document* const front = Front();
    const auto name = [](UINT id, const std::string& effect) {
        return Text(id, {effect.empty() ? L"" : Wide(TitleOf(effect.c_str()))});
    };
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        const UINT id = GetMenuItemID(menu, i);
        if (id == static_cast<UINT>(-1) || id == 0 ||
            (IsBetween(id, ID_FILE_RECENT_FIRST, ID_FILE_RECENT_LAST) && settings_.recent.empty())) {
            continue;
        }
        const UINT able = IsEnabled(id) ? UINT{MF_ENABLED} : UINT{MF_GRAYED};
        EnableMenuItem(menu, id, MF_BYCOMMAND | able);
        CheckMenuItem(menu, id, MF_BYCOMMAND | (IsChecked(id) ? UINT{MF_CHECKED} : UINT{MF_UNCHECKED}));
        if (id == ID_EDIT_UNDO && front != nullptr) {
            ModifyMenuW(menu, id, MF_BYCOMMAND | able, id, name(IDS_UNDO, front->history.Current().made).c_str());
        } else if (id == ID_EDIT_REDO && front != nullptr) {
            const std::string made = front->history.CanRedo() ? front->history.NextMade() : std::string();
            ModifyMenuW(menu, id, MF_BYCOMMAND | able, id, name(IDS_REDO, made).c_str());
        }
    }
}

bool MainWindow::IsEnabled(UINT id) const {
    const Document* const front = Front();
    const bool idle = !task_.IsBusy();
    switch (id) {
    case ID_FILE_SAVE:
    case ID_FILE_SAVE_AS:
    case ID_FILE_CLOSE:
    case ID_EDIT_COPY:
    case ID_SELECT_ALL:
    case ID_SELECT_RECTANGLE:
    case ID_SELECT_ELLIPSE:
    case ID_SELECT_POLYGON:
    case ID_SELECT_COLOUR:
    case ID_SELECT_LOAD_MASK:
        return front != nullptr && idle;
    case ID_SELECT_NONE:
    case ID_SELECT_INVERT:
    case ID_SELECT_MAKE_MASK:
    case ID_SELECT_SAVE_MASK:
        return front != nullptr && idle && !front->history.Current().selection.IsEmpty();
    case ID_EDIT_UNDO:
    case ID_EDIT_UNDO_ALL:
        return front != nullptr && idle && front->history.CanUndo();
    case ID_EDIT_REDO:
        return front != nullptr && idle && front->history.CanRedo();
    case ID_EDIT_PASTE_NEW:
        return idle && QV8IsClipBrdData(window_) != 0;
    case ID_EDIT_PASTE_INTO:
        return idle && front != nullptr && QV8IsClipBrdData(window_) != 0;
    case ID_VIEW_FIT:
    case ID_VIEW_ACTUAL:
    case ID_VIEW_ZOOM_IN:
    case ID_VIEW_ZOOM_OUT:
        return front != nullptr;
    case ID_VIEW_NEXT:
    case ID_VIEW_PREVIOUS:
        return documents_.size() > 1 && idle;
    case ID_EFFECT_RESET:
        return chosen_.has_value();
    case ID_FILE_OPEN:
    case ID_EFFECT_APPLY:
        return idle;
    default:
        return true;
    }
}

bool MainWindow::IsChecked(UINT id) const {
    if (IsBetween(id, ID_EDIT_MEMORY_FIRST, ID_EDIT_MEMORY_LAST)) {
        return settings_.megabytes == 128U << (id - ID_EDIT_MEMORY_FIRST);
    }
    if (IsBetween(id, ID_EFFECT_FIRST, ID_EFFECT_LAST)) {
        return chosen_ && id - ID_EFFECT_FIRST == *chosen_;
    }
    switch (id) {
    case ID_VIEW_PREVIEW:
        return settings_.preview;
    case ID_VIEW_DIVIDER:
        return settings_.divider;
    case ID_VIEW_BEFORE:
        return canvas_->ShowsBefore();
    case ID_SELECT_RECTANGLE:
        return areaForm_ == AreaForm::kRectangle;
    case ID_SELECT_ELLIPSE:
        return areaForm_ == AreaForm::kEllipse;
    case ID_SELECT_POLYGON:
        return areaForm_ == AreaForm::kPolygon;
    case ID_SELECT_COLOUR:
        return areaForm_ == AreaForm::kColour;
    case ID_SELECT_HAND:
        return !areaForm_.has_value();
    default:
        return false;
    }
}

void MainWindow::FillRecent(HMENU menu) const {
    while (DeleteMenu(menu, 0, MF_BYPOSITION)) {
    }
    UINT id = ID_FILE_RECENT_FIRST;
    for (const std::wstring& path : settings_.recent) {
        const std::wstring number = std::to_wstring((id - ID_FILE_RECENT_FIRST + 1) % 10);
        std::wstring shown = L"&" + number;
        shown += L' ';
        for (const wchar_t c : path) {
            shown += c == L'&' ? L"&&" : std::wstring(1, c);
        }
        AppendMenuW(menu, MF_STRING, id++, shown.c_str());
    }
    if (settings_.recent.empty()) {
        AppendMenuW(menu, MF_STRING | MF_GRAYED, id, Text(IDS_NO_RECENT).c_str());
    }
}

void MainWindow::ShowStatus(int part, const std::wstring& text) {
    SendMessageW(status_, SB_SETTEXTW, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(text.c_str()));
}

void MainWindow::ShowMemory() {
    const std::vector<History*> histories = Histories();
    const std::uint64_t kept = (BytesKept(histories) + kMegabyte - 1) / kMegabyte;
    ShowStatus(STATUS_MEMORY, Text(IDS_STATUS_MEMORY, {std::to_wstring(kept), std::to_wstring(settings_.megabytes)}));
}

void MainWindow::ShowState() {
    const Document* const front = Front();
    if (front == nullptr) {
        SetWindowTextW(window_, Text(IDS_TITLE).c_str());
        for (const int part : {STATUS_SIZE, STATUS_ZOOM, STATUS_POINTER}) {
            ShowStatus(part, L"");
        }
        return ShowMemory();
    }
    const std::wstring mark = front->history.IsSaved() ? L"" : Text(IDS_CHANGED_MARK);
    SetWindowTextW(window_, Text(IDS_TITLE_OF_PICTURE, {front->name, mark}).c_str());
    const LockedPicture picture(*front->Image());
    ShowStatus(STATUS_SIZE, Text(IDS_STATUS_SIZE, {std::to_wstring(picture.Width()), std::to_wstring(picture.Height()),
                                                   std::to_wstring(picture.Header().biBitCount), LayoutName(picture)}));
    ShowMemory();
}

void MainWindow::ViewChanged() {
    if (Document* const front = Front(); front != nullptr && canvas_ != nullptr) {
        front->view = canvas_->View();
        front->fits = canvas_->Fits();
        const double percent = 100 * front->view.scale;
        ShowStatus(STATUS_ZOOM,
                   Text(IDS_STATUS_ZOOM, {percent < 10 ? std::to_wstring(percent).substr(0, 4) : Number(percent)}));
        UpdatePreview();
    }
}

COLORREF MainWindow::ColourAt(const Position& at) const {
    RECT pixel{static_cast<LONG>(at.x), static_cast<LONG>(at.y), static_cast<LONG>(at.x) + 1,
               static_cast<LONG>(at.y) + 1};
    const LONG column = pixel.left;
    const Picture part = PartOf(*Front()->Image(), pixel);
    const LockedPicture locked(part);
    // The system knows how to read a pixel of any layout.
    const WindowDevice screen(nullptr);
    Surface surface;
    surface.Prepare(screen.Get(), 1, 1);
    StretchDIBits(surface.Device(), 0, 0, 1, 1, column - pixel.left, 0, 1, 1, locked.Bytes() + locked.PixelOffset(),
                  reinterpret_cast<const BITMAPINFO*>(locked.Bytes()), DIB_RGB_COLORS, SRCCOPY);
    return GetPixel(surface.Device(), 0, 0);
}

void MainWindow::PointerMoved(const Position* inPicture) {
    if (inPicture == nullptr || Front() == nullptr) {
        return ShowStatus(STATUS_POINTER, L"");
    }
    const COLORREF colour = ColourAt(*inPicture);
    const std::wstring levels = std::to_wstring(GetRValue(colour)) + L", " + std::to_wstring(GetGValue(colour)) +
                                L", " + std::to_wstring(GetBValue(colour));
    ShowStatus(STATUS_POINTER, Text(IDS_STATUS_POINTER, {std::to_wstring(static_cast<LONG>(inPicture->x)),
                                                         std::to_wstring(static_cast<LONG>(inPicture->y)), levels}));
}

void MainWindow::Say(const std::wstring& text, UINT icon) {
    MessageBoxW(window_, text.c_str(), Text(IDS_TITLE).c_str(), MB_OK | icon);
}

void MainWindow::Complain(UINT id, const std::string& reason) {
    Say(Text(id, {Wide(reason)}), MB_ICONWARNING);
}
