#include "parameter_panel.h"

#include <algorithm>

#include <commctrl.h>
#include <windowsx.h>

#include "catalogue/text.h"
#include "commands.h"
#include "system/guard.h"
#include "system/text.h"
#include "texts.h"

namespace {

using catalogue::Kind;

constexpr const wchar_t* kClass = L"Qv8EffectParameters";
constexpr int kHeight = 23; // of a control
constexpr int kGap = 6;
constexpr int kLabelHeight = 17;
constexpr int kNumberWidth = 64;
constexpr int kButtonWidth = 76;
constexpr UINT kBuildOn = WM_APP + 2;
constexpr DWORD kPieceMilliseconds = 20;

bool IsFlag(const catalogue::Parameter& parameter) {
    return parameter.kind == Kind::kFlag || parameter.kind == Kind::kChannel;
}

bool IsColour(const catalogue::Parameter& parameter) {
    return parameter.kind == Kind::kColour || parameter.kind == Kind::kOptionalColour;
}

bool HasChoices(const catalogue::Parameter& parameter) {
    return parameter.kind == Kind::kChoice || parameter.kind == Kind::kKernel || IsOtherPicture(parameter);
}

std::wstring LabelOf(const catalogue::Parameter& parameter) {
    const std::wstring title = Wide(TitleOf(parameter.name));
    return *parameter.unit != '\0' ? Text(IDS_LABEL_UNIT, {title, Wide(parameter.unit)}) : title;
}

} // namespace

ParameterPanel::ParameterPanel(HWND parent, PanelOwner& owner) : owner_(owner) {
    WNDCLASSEXW description = {};
    description.cbSize = sizeof description;
    description.lpfnWndProc = Procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    description.hbrBackground = GetSysColorBrush(COLOR_BTNFACE);
    description.lpszClassName = kClass;
    RegisterClassExW(&description);
    CreateWindowExW(WS_EX_CONTROLPARENT, kClass, L"", WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_VSCROLL, 0, 0, 0, 0,
                    parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_PARAMETERS)), description.hInstance, this);
}

QV8_REALIGN LRESULT CALLBACK ParameterPanel::Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* const panel = static_cast<ParameterPanel*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        panel->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(panel));
    }
    auto* const panel = reinterpret_cast<ParameterPanel*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (panel == nullptr) {
        return DefWindowProcW(window, message, wParam, lParam);
    }
    return Guarded(window, [&] { return panel->Handle(message, wParam, lParam); });
}

LRESULT ParameterPanel::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_SIZE:
        Layout();
        return 0;
    case WM_COMMAND:
        Command(LOWORD(wParam), HIWORD(wParam));
        return 0;
    case WM_HSCROLL:
        Slide(reinterpret_cast<HWND>(lParam));
        return 0;
    case kBuildOn:
        Build();
        return 0;
    case WM_VSCROLL:
        ScrollBy(LOWORD(wParam));
        return 0;
    case WM_MOUSEWHEEL:
        Scroll(scrolled_ - GET_WHEEL_DELTA_WPARAM(wParam) / 3);
        return 0;
    case WM_DRAWITEM:
        DrawColour(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    default:
        return DefWindowProcW(window_, message, wParam, lParam);
    }
}

HWND ParameterPanel::Add(const wchar_t* windowClass, const std::wstring& text, DWORD style, int id,
                         DWORD extendedStyle) {
    const HWND control =
        CreateWindowExW(extendedStyle, windowClass, text.c_str(), WS_CHILD | WS_VISIBLE | style, 0, 0, 0, 0, window_,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), GetModuleHandleW(nullptr), nullptr);
    SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
    return control;
}

void ParameterPanel::Show(EffectSetup* setup, Extent picture, HFONT font) {
    const bool isShown = setup == setup_ && font == font_ && picture.width == picture_.width &&
                         picture.height == picture_.height && tips_ != nullptr;
    if (isShown) {
        return Refresh();
    }
    setup_ = setup;
    picture_ = picture;
    font_ = font;
    rows_.clear();
    if (tips_ == nullptr) {
        tips_ = CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, 0, 0,
                                0, 0, window_, nullptr, GetModuleHandleW(nullptr), nullptr);
    }
    SendMessageW(tips_, TTM_SETMAXTIPWIDTH, 0, Dots(window_)(300));
    if (setup_ != nullptr) {
        int id = IDC_PARAMETER_FIRST;
        for (const catalogue::Parameter& parameter : setup_->values.Effect().Parameters()) {
            if (parameter.kind != Kind::kMask) { // comes with the selection of its picture
                rows_.push_back({&parameter, ScaleFor(parameter, picture_), id, false, {}});
            }
            id += IDC_PARAMETER_STRIDE;
        }
    }
    scrolled_ = 0;
    height_ = Dots(window_)(kGap / 2);
    isOld_ = true;
    made_ = 0;
    Build();
}

// On a busy machine it takes long to make windows. Other messages get their turn in between.
void ParameterPanel::Build() {
    const DWORD begun = GetTickCount();
    while (IsBuilding()) {
        if (GetTickCount() - begun >= kPieceMilliseconds) {
            PostMessageW(window_, kBuildOn, 0, 0);
            return;
        }
        BuildPiece();
    }
}

void ParameterPanel::BuildPiece() {
    if (const HWND old = isOld_ ? GetWindow(window_, GW_CHILD) : nullptr; old != nullptr) {
        TOOLINFOW tip = {};
        tip.cbSize = TTTOOLINFOW_V1_SIZE;
        tip.hwnd = window_;
        tip.uId = reinterpret_cast<UINT_PTR>(old);
        SendMessageW(tips_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&tip));
        DestroyWindow(old);
        return;
    }
    isOld_ = false;
    if (made_ < rows_.size()) {
        Row& row = rows_[made_++];
        RECT client;
        GetClientRect(window_, &client);
        AddRow(row);
        height_ = LayoutRow(row, height_, client.right, Dots(window_));
        RefreshRow(row, nullptr);
    }
    if (made_ == rows_.size()) {
        ShowScrollBar();
    }
}

void ParameterPanel::AddRow(Row& row) {
    row.isMade = true;
    const catalogue::Parameter& parameter = *row.parameter;
    if (IsFlag(parameter)) {
        Add(WC_BUTTONW, LabelOf(parameter), WS_TABSTOP | BS_AUTOCHECKBOX, row.id + IDC_PART_FLAG);
        return AddTip(row);
    }
    Add(WC_STATICW, LabelOf(parameter), SS_LEFTNOWORDWRAP | SS_NOPREFIX | SS_NOTIFY, row.id + IDC_PART_LABEL);
    if (HasChoices(parameter)) {
        Add(WC_COMBOBOXW, L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST, row.id + IDC_PART_CHOICE);
        FillChoices(row);
    }
    if (row.scale) {
        const HWND slider = Add(TRACKBAR_CLASSW, L"", WS_TABSTOP | TBS_HORZ | TBS_NOTICKS, row.id + IDC_PART_SLIDER);
        SendMessageW(slider, TBM_SETRANGEMIN, FALSE, 0);
        SendMessageW(slider, TBM_SETRANGEMAX, FALSE, row.scale->steps);
        SendMessageW(slider, TBM_SETPAGESIZE, 0, std::max(1, row.scale->steps / 20));
    }
    if (!HasChoices(parameter)) {
        Add(WC_EDITW, L"", WS_TABSTOP | ES_AUTOHSCROLL, row.id + IDC_PART_EDIT, WS_EX_CLIENTEDGE);
    }
    if (IsColour(parameter)) {
        Add(WC_BUTTONW, Text(IDS_CHOOSE), WS_TABSTOP | BS_OWNERDRAW, row.id + IDC_PART_BUTTON);
    } else if (parameter.kind == Kind::kKernel) {
        Add(WC_BUTTONW, Text(IDS_FILE), WS_TABSTOP, row.id + IDC_PART_BUTTON);
    }
    AddTip(row);
}

void ParameterPanel::AddTip(const Row& row) {
    const std::wstring help = Wide(row.parameter->help);
    const std::wstring limits = Wide(catalogue::LimitsOf(*row.parameter));
    std::wstring text = help.empty() || limits.empty() ? help + limits : Text(IDS_LIMITS, {help, limits});
    for (int part = IDC_PART_LABEL; part <= IDC_PART_BUTTON && !text.empty(); ++part) {
        TOOLINFOW tip = {};
        tip.cbSize = TTTOOLINFOW_V1_SIZE;
        tip.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
        tip.hwnd = window_;
        tip.uId = reinterpret_cast<UINT_PTR>(Part(row, part));
        tip.lpszText = text.data();
        if (tip.uId != 0) {
            SendMessageW(tips_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tip));
        }
    }
}

void ParameterPanel::FillChoices(const Row& row) {
    const HWND list = Part(row, IDC_PART_CHOICE);
    const auto add = [list](const std::wstring& text, LPARAM data) {
        const LRESULT index = SendMessageW(list, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
        SendMessageW(list, CB_SETITEMDATA, static_cast<WPARAM>(index), data);
    };
    SendMessageW(list, CB_RESETCONTENT, 0, 0);
    if (IsOtherPicture(*row.parameter)) {
        add(Text(IDS_NO_PICTURE_CHOSEN), 0);
        for (const OpenPicture& picture : owner_.OtherPictures()) {
            add(picture.name, picture.id);
        }
        add(Text(IDS_OPEN_ANOTHER), -1);
    } else if (row.parameter->kind == Kind::kKernel) {
        for (const std::string& name : catalogue::KernelNames()) {
            add(Wide(name), 0);
        }
    } else {
        for (const catalogue::Choice& choice : row.parameter->Choices()) {
            add(Wide(choice.name), choice.number);
        }
    }
}

int ParameterPanel::LayoutRow(const Row& row, int top, int width, const Dots& dots) {
    const auto place = [this, &row, &dots](int part, int left, int y, int partWidth, int height) {
        MoveWindow(Part(row, part), left, y, partWidth, dots(height), FALSE);
    };
    const int left = dots(kGap);
    width -= 2 * left;
    if (IsFlag(*row.parameter)) {
        place(IDC_PART_FLAG, left, top, width, kHeight);
        return top + dots(kHeight);
    }
    place(IDC_PART_LABEL, left, top, width, kLabelHeight);
    top += dots(kLabelHeight);
    const bool hasButton = Part(row, IDC_PART_BUTTON) != nullptr;
    const int button = hasButton ? dots(kButtonWidth) : 0;
    const int rest = width - button - (hasButton ? dots(kGap) : 0);
    if (row.scale) {
        const int number = dots(kNumberWidth);
        place(IDC_PART_SLIDER, left, top, width - number - dots(kGap), kHeight);
        place(IDC_PART_EDIT, left + width - number, top, number, kHeight);
    } else {
        place(IDC_PART_EDIT, left, top, rest, kHeight);
    }
    place(IDC_PART_CHOICE, left, top, rest, 10 * kHeight); // with its list
    place(IDC_PART_BUTTON, left + width - button, top, button, kHeight);
    return top + dots(kHeight) + dots(kGap);
}

void ParameterPanel::Layout() {
    RECT client;
    GetClientRect(window_, &client);
    const Dots dots(window_);
    int top = dots(kGap / 2) - scrolled_;
    for (std::size_t i = 0; i != made_; ++i) {
        top = LayoutRow(rows_[i], top, client.right, dots);
    }
    height_ = top + scrolled_;
    ShowScrollBar();
}

// And all that has come under it anew.
void ParameterPanel::ShowScrollBar() {
    RECT client;
    GetClientRect(window_, &client);
    SCROLLINFO scroll = {};
    scroll.cbSize = sizeof scroll;
    scroll.fMask = SIF_PAGE | SIF_RANGE | SIF_POS;
    scroll.nMax = std::max(0, height_ - 1);
    scroll.nPage = static_cast<UINT>(client.bottom);
    scroll.nPos = scrolled_;
    SetScrollInfo(window_, SB_VERT, &scroll, TRUE);
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

void ParameterPanel::Scroll(int to) {
    RECT client;
    GetClientRect(window_, &client);
    to = std::clamp(to, 0, std::max(0, height_ - static_cast<int>(client.bottom)));
    if (to != scrolled_) {
        scrolled_ = to;
        Layout();
    }
}

void ParameterPanel::ScrollBy(WORD request) {
    RECT client;
    GetClientRect(window_, &client);
    SCROLLINFO scroll = {};
    scroll.cbSize = sizeof scroll;
    scroll.fMask = SIF_TRACKPOS;
    GetScrollInfo(window_, SB_VERT, &scroll);
    const int line = Dots(window_)(kHeight);
    switch (request) {
    case SB_LINEUP:
        return Scroll(scrolled_ - line);
    case SB_LINEDOWN:
        return Scroll(scrolled_ + line);
    case SB_PAGEUP:
        return Scroll(scrolled_ - static_cast<int>(client.bottom));
    case SB_PAGEDOWN:
        return Scroll(scrolled_ + static_cast<int>(client.bottom));
    case SB_THUMBTRACK:
    case SB_THUMBPOSITION:
        return Scroll(scroll.nTrackPos);
    default:
        return;
    }
}

std::string ParameterPanel::Mistake() const {
    const auto found = std::find_if(rows_.begin(), rows_.end(), [](const Row& row) { return !row.mistake.empty(); });
    return found == rows_.end() ? "" : TitleOf(found->parameter->name) + ": " + found->mistake;
}

ParameterPanel::Row* ParameterPanel::RowOf(int id) {
    const auto found = std::find_if(rows_.begin(), rows_.end(), [id](const Row& row) {
        return row.isMade && id >= row.id && id < row.id + IDC_PARAMETER_STRIDE;
    });
    return found == rows_.end() ? nullptr : &*found;
}
