// The window itself: its controls, where they are, and where messages and commands go.
#include "main_window.h"

#include <algorithm>
#include <array>

#include <commctrl.h>
#include <windowsx.h>

#include "catalogue/effect.h"
#include "commands.h"
#include "pictures/image_file.h"
#include "qv8version.h"
#include "system/guard.h"
#include "texts.h"

namespace {

constexpr int kGap = 6;               // lengths are in 96ths of an inch
constexpr int kLeastWidth = 200;      // of the picture
constexpr int kLeastPanelWidth = 275; // of the effects, for the buttons below them
constexpr int kMostPanelWidth = 4000; // where more stands in the registry, it is not ours
constexpr int kControlHeight = 23;
constexpr int kHelpHeight = 34;
constexpr int kButtonWidth = 84;
constexpr int kTabHeight = 25;
constexpr UINT kDotsChanged = 0x02E0; // WM_DPICHANGED

HWND MakeControl(HWND parent, const wchar_t* windowClass, const std::wstring& text, DWORD style, int id) {
    return CreateWindowExW(0, windowClass, text.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, parent,
                           reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
}

} // namespace

MainWindow::MainWindow() : settings_(LoadSettings()) {
    for (const catalogue::Effect& effect : catalogue::AllEffects()) {
        setups_.emplace_back(effect);
    }
    WNDCLASSEXW description = {};
    description.cbSize = sizeof description;
    description.lpfnWndProc = Procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hIcon = LoadIconW(nullptr, IDI_APPLICATION);
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = QV8WINDOW_CLASS;
    RegisterClassExW(&description);
    const Dots dots(GetDeviceCaps(WindowDevice(nullptr).Get(), LOGPIXELSY));
    RECT screen;
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &screen, 0);
    CreateWindowExW(WS_EX_ACCEPTFILES, QV8WINDOW_CLASS, Text(IDS_TITLE).c_str(), WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                    CW_USEDEFAULT, CW_USEDEFAULT, std::min(dots(1100), static_cast<int>(screen.right - screen.left)),
                    std::min(dots(760), static_cast<int>(screen.bottom - screen.top)), nullptr,
                    LoadMenuW(description.hInstance, MAKEINTRESOURCEW(1)), description.hInstance, this);
}

void MainWindow::Show(int how) {
    if (settings_.place.length != 0) {
        settings_.place.showCmd =
            settings_.place.showCmd == SW_SHOWMAXIMIZED ? SW_SHOWMAXIMIZED : static_cast<UINT>(how);
        SetWindowPlacement(window_, &settings_.place);
    } else {
        ShowWindow(window_, how);
    }
    UpdateWindow(window_);
}

QV8_REALIGN LRESULT CALLBACK MainWindow::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* const self = static_cast<MainWindow*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        self->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* const self = reinterpret_cast<MainWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    return Guarded(window, [&] { return self->HandleMessage(message, wParam, lParam); });
}

LRESULT MainWindow::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        wayBack_.Attach(window_);
        MakeControls();
        return 0;
    case WM_SIZE:
        Layout();
        return 0;
    case kDotsChanged: {
        const RECT& place = *reinterpret_cast<const RECT*>(lParam);
        SetWindowPos(window_, nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
        UseFont();
        Layout();
        return 0;
    }
    case WM_SETTINGCHANGE:
        UseDarkTitle(window_);
        UseFont();
        Layout();
        return 0;
    case WM_COMMAND:
        Command(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case DM_GETDEFID: // Enter in a field applies
        return MAKELRESULT(ID_EFFECT_APPLY, DC_HASDEFID);
    case WM_NOTIFY:
        return Notified(*reinterpret_cast<const NMHDR*>(lParam));
    case WM_INITMENUPOPUP:
        UpdateMenu(reinterpret_cast<HMENU>(wParam));
        return 0;
    case WM_MOUSEWHEEL: // of whatever has the focus, without a use for it
        canvas_->Wheel(wParam, lParam);
        return 0;
    case WM_DROPFILES:
        DropFiles(reinterpret_cast<HDROP>(wParam));
        return 0;
    case WM_COPYDATA:
        return Handed(*reinterpret_cast<const COPYDATASTRUCT*>(lParam)) ? 1 : 0;
    case QV8WINDOW_STATE:
        return State(wParam);
    case WayBack::kMessage:
        wayBack_.RunAll();
        return 0;
    case WM_QUERYENDSESSION:
        return std::all_of(documents_.begin(), documents_.end(), [](const auto& d) { return d->history.IsSaved(); });
    case WM_CLOSE:
        Finish();
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcW(window_, message, wParam, lParam);
    }
}

LRESULT MainWindow::State(WPARAM what) {
    if (what == QV8WINDOW_PREVIEWS) {
        return previewsPainted_;
    }
    return task_.IsBusy() || !toOpen_.empty() || levelMaker_.IsBusy() || previewMaker_.IsBusy() ||
           !wayBack_.IsEmpty() || panel_->IsBuilding();
}

void MainWindow::MakeControls() {
    tabs_ = MakeControl(window_, WC_TABCONTROLW, L"", WS_TABSTOP | WS_CLIPSIBLINGS | TCS_FOCUSNEVER, IDC_TABS);
    canvas_ = std::make_unique<Canvas>(window_, *this);
    splitter_ = std::make_unique<Splitter>(window_, *this);
    list_ = std::make_unique<EffectList>(window_);
    help_ = MakeControl(window_, WC_STATICW, Text(IDS_NO_EFFECT), SS_LEFT | SS_NOPREFIX, -1);
    panel_ = std::make_unique<ParameterPanel>(window_, *this);
    preview_ = MakeControl(window_, WC_BUTTONW, Text(IDS_PREVIEW), WS_TABSTOP | BS_AUTOCHECKBOX, IDC_PREVIEW);
    reset_ = MakeControl(window_, WC_BUTTONW, Text(IDS_RESET), WS_TABSTOP, ID_EFFECT_RESET);
    apply_ = MakeControl(window_, WC_BUTTONW, Text(IDS_APPLY), WS_TABSTOP | BS_DEFPUSHBUTTON, ID_EFFECT_APPLY);
    status_ = MakeControl(window_, STATUSCLASSNAMEW, L"", SBARS_SIZEGRIP, IDC_STATUS);
    Button_SetCheck(preview_, settings_.preview ? BST_CHECKED : BST_UNCHECKED);
    canvas_->ShowDivider(settings_.divider);
    MakeMenus();
    UseDarkTitle(window_);
    UseFont();
    ShowFront();
    ShowStatus(STATUS_MESSAGE, Text(IDS_READY));
}

void MainWindow::UseFont() {
    GdiObject<HFONT> font = MessageFont(Dots(window_));
    for (const HWND control : {tabs_, help_, preview_, reset_, apply_, status_}) {
        SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font.Get()), TRUE);
    }
    list_->UseFont(font.Get());
    panel_->Show(Setup(), Front() != nullptr ? Front()->Size() : Extent{}, font.Get());
    font_ = std::move(font);
}

void MainWindow::Layout() {
    RECT client;
    GetClientRect(window_, &client);
    SendMessageW(status_, WM_SIZE, 0, 0);
    RECT status;
    GetWindowRect(status_, &status);
    const Dots dots(window_);
    const int height = static_cast<int>(client.bottom - (status.bottom - status.top));
    const int panel = PanelWidth();
    const int left = static_cast<int>(client.right) - panel;
    const int bar = dots(kGap);
    const int tabs = documents_.empty() ? 0 : dots(kTabHeight);
    MoveWindow(tabs_, 0, 0, left, tabs, FALSE);
    MoveWindow(canvas_->Window(), 0, tabs, left, std::max(0, height - tabs), FALSE);
    MoveWindow(splitter_->Window(), left, 0, bar, height, FALSE);
    LayoutPanel(left + bar, 0, panel - bar, height);
    LayoutStatus(client.right);
    // Once and at the end: controls that draw where they have come to are drawn several times.
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

// As wide as it was made, as far as the window has room.
int MainWindow::PanelWidth() const {
    RECT client;
    GetClientRect(window_, &client);
    const Dots dots(window_);
    const int half = static_cast<int>(client.right) / 2;
    const int most = std::max(static_cast<int>(client.right) - dots(kLeastWidth), half);
    const auto wanted = static_cast<int>(std::min<DWORD>(settings_.panelWidth, kMostPanelWidth));
    return std::clamp(dots(wanted), std::min(dots(kLeastPanelWidth), half), most);
}

void MainWindow::SplitterMoved(int by) {
    const int dots = Dots(window_).PerInch();
    settings_.panelWidth = static_cast<DWORD>(std::max(0, MulDiv(PanelWidth() - by, 96, dots)));
    settings_.panelWidth = static_cast<DWORD>(MulDiv(PanelWidth(), 96, dots));
    Layout();
}

void MainWindow::LayoutPanel(int left, int top, int width, int height) {
    const Dots dots(window_);
    const int gap = dots(kGap);
    const int control = dots(kControlHeight);
    left += gap;
    width -= 2 * gap;
    top += gap;
    const int buttons = height - gap - control;
    const int listHeight = std::max(2 * control, (buttons - top) * 40 / 100);
    list_->Place(left, top, width, listHeight, control, gap);
    const int help = top + listHeight + gap;
    MoveWindow(help_, left, help, width, dots(kHelpHeight), FALSE);
    const int panel = help + dots(kHelpHeight) + gap;
    MoveWindow(panel_->Window(), left - gap, panel, width + 2 * gap, std::max(0, buttons - gap - panel), FALSE);
    const int button = dots(kButtonWidth);
    MoveWindow(apply_, left + width - button, buttons, button, control, FALSE);
    MoveWindow(reset_, left + width - 2 * button - gap, buttons, button, control, FALSE);
    MoveWindow(preview_, left, buttons, width - 2 * (button + gap), control, FALSE);
}

void MainWindow::LayoutStatus(int width) {
    const Dots dots(window_);
    constexpr std::array kWidths{190, 60, 190, 170};
    std::array<int, STATUS_PARTS> ends{};
    ends[STATUS_PARTS - 1] = -1;
    int end = width;
    for (std::size_t part = STATUS_PARTS - 1; part > 0; --part) {
        end -= dots(kWidths[part - 1]);
        ends[part - 1] = std::max(end, dots(40));
    }
    SendMessageW(status_, SB_SETPARTS, STATUS_PARTS, reinterpret_cast<LPARAM>(ends.data()));
}

LRESULT MainWindow::Notified(const NMHDR& header) {
    if (header.hwndFrom == tabs_ && header.code == TCN_SELCHANGE) {
        GoTo(static_cast<std::size_t>(TabCtrl_GetCurSel(tabs_)));
    } else if (list_ != nullptr && header.hwndFrom == list_->Tree() && header.code == TVN_SELCHANGEDW &&
               !list_->IsFilling()) {
        if (const auto index = list_->Selected(); index && index != chosen_) {
            ChooseEffect(*index);
        }
    }
    return 0;
}

bool MainWindow::TakeKey(const MSG& message) {
    const bool isKey = message.message == WM_KEYDOWN || message.message == WM_KEYUP;
    if (isKey && message.wParam == VK_F9) {
        canvas_->ShowBefore(message.message == WM_KEYDOWN);
        return true;
    }
    if (message.message == WM_MOUSEWHEEL && WindowFromPoint(message.pt) == canvas_->Window()) {
        canvas_->Wheel(message.wParam, message.lParam); // whatever has the focus
        return true;
    }
    if (message.message == WM_KEYDOWN && message.wParam == VK_RETURN && message.hwnd == list_->Search()) {
        list_->SelectFirst();
        return true;
    }
    // What edits a field is the field's.
    std::array<wchar_t, 8> name{};
    GetClassNameW(message.hwnd, name.data(), static_cast<int>(name.size()));
    const bool isField = std::wstring(name.data()) == L"Edit";
    const bool edits = isField && message.message == WM_KEYDOWN && GetKeyState(VK_CONTROL) < 0 &&
                       std::wstring(L"ACVXZY").find(static_cast<wchar_t>(message.wParam)) != std::wstring::npos;
    static const HACCEL keys = LoadAcceleratorsW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(1));
    MSG copy = message;
    return (!edits && TranslateAcceleratorW(window_, keys, &copy) != 0) || IsDialogMessageW(window_, &copy) != 0;
}

void MainWindow::Command(int id, int notification) {
    if (id == IDC_SEARCH) {
        if (notification == EN_CHANGE && !list_->IsFilling()) {
            list_->Filter();
        }
        return;
    }
    if (id >= ID_EFFECT_FIRST && id <= ID_EFFECT_LAST) {
        const auto index = static_cast<std::size_t>(id - ID_EFFECT_FIRST);
        if (index < setups_.size() && !ClipboardEffect(setups_[index].values.Effect())) {
            ChooseEffect(index);
        }
        return;
    }
    if (!IsEnabled(static_cast<UINT>(id))) {
        MessageBeep(MB_OK);
        ShowStatus(STATUS_MESSAGE, Text(task_.IsBusy() ? IDS_BUSY : IDS_NEEDS_PICTURE));
        return;
    }
    if (FileCommand(id) || EditCommand(id) || SelectCommand(id) || ViewCommand(id)) {
        return;
    }
    switch (id) {
    case ID_EFFECT_APPLY:
        return Apply();
    case ID_EFFECT_RESET:
        return ResetEffect();
    case ID_HELP_ABOUT:
        return Say(Text(IDS_ABOUT, {Wide(QV8_VERSION), Wide(CodecVersions())}), MB_ICONINFORMATION);
    case ID_HELP_KEYS:
        return Say(Text(IDS_KEYS), MB_ICONINFORMATION);
    default:
        return;
    }
}

bool MainWindow::ViewCommand(int id) {
    switch (id) {
    case ID_VIEW_FIT:
        canvas_->Fit();
        return true;
    case ID_VIEW_ACTUAL:
        canvas_->Zoom(1);
        return true;
    case ID_VIEW_ZOOM_IN:
    case ID_VIEW_ZOOM_OUT:
        canvas_->ZoomBy(id == ID_VIEW_ZOOM_IN ? 1 : -1);
        return true;
    case ID_VIEW_PREVIEW: // from its key; the box has changed itself
        Button_SetCheck(preview_, settings_.preview ? BST_UNCHECKED : BST_CHECKED);
        [[fallthrough]];
    case IDC_PREVIEW:
        settings_.preview = Button_GetCheck(preview_) == BST_CHECKED;
        isPreviewWanted_ = true;
        UpdatePreview();
        return true;
    case ID_VIEW_DIVIDER:
        settings_.divider = !settings_.divider;
        canvas_->ShowDivider(settings_.divider);
        return true;
    case ID_VIEW_BEFORE:
        canvas_->ShowBefore(!canvas_->ShowsBefore());
        return true;
    case ID_VIEW_NEXT:
    case ID_VIEW_PREVIOUS:
        GoBy(id == ID_VIEW_NEXT ? 1 : -1);
        return true;
    case ID_VIEW_FIND:
        SetFocus(list_->Search());
        SendMessageW(list_->Search(), EM_SETSEL, 0, -1);
        return true;
    case ID_VIEW_NEXT_PANE:
    case ID_VIEW_PREVIOUS_PANE:
        NextPane(id == ID_VIEW_NEXT_PANE ? 1 : -1);
        return true;
    default:
        return false;
    }
}

void MainWindow::NextPane(int step) {
    const std::array<HWND, 4> panes{canvas_->Window(), list_->Search(), list_->Tree(), panel_->Window()};
    const HWND focus = GetFocus();
    const auto has = [focus](HWND pane) { return pane == focus || IsChild(pane, focus); };
    const auto at = std::find_if(panes.begin(), panes.end(), has) - panes.begin();
    const auto count = static_cast<std::ptrdiff_t>(panes.size());
    HWND next = panes[static_cast<std::size_t>((at % count + step + count) % count)];
    if (next == panel_->Window()) {
        const HWND first = GetNextDlgTabItem(next, nullptr, FALSE);
        next = first != nullptr ? first : apply_;
    }
    SetFocus(next);
}

void MainWindow::Finish() {
    if (task_.IsBusy()) {
        closesAfterTask_ = true;
        task_.Stop();
        return ShowStatus(STATUS_MESSAGE, Text(IDS_STILL_WORKING));
    }
    CloseAll();
}
