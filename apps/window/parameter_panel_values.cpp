// The way of values into the controls of the panel, and out of them.
#include "parameter_panel.h"

#include <algorithm>
#include <array>

#include <commctrl.h>
#include <commdlg.h>
#include <windowsx.h>

#include "catalogue/text.h"
#include "chains/kernel_file.h"
#include "commands.h"
#include "pictures/failure.h"
#include "system/file_dialogs.h"
#include "system/text.h"
#include "texts.h"

namespace {

using catalogue::Kind;

COLORREF ColourOf(const catalogue::Value& value) {
    const auto* const colour = std::get_if<catalogue::Colour>(&value);
    return colour != nullptr ? RGB(colour->red, colour->green, colour->blue) : RGB(0, 0, 0);
}

// Its place among those that have a name, or -1.
int IndexOfKernel(const catalogue::Value& value) {
    const std::vector<std::string> names = catalogue::KernelNames();
    const auto found = std::find_if(names.begin(), names.end(), [&value](const std::string& name) {
        catalogue::Kernel kernel;
        return catalogue::FindKernel(name, kernel) && AreEqual(value, kernel);
    });
    return found == names.end() ? -1 : static_cast<int>(found - names.begin());
}

void SelectItemWith(HWND list, LPARAM data) {
    const int count = ComboBox_GetCount(list);
    int found = -1;
    for (int i = 0; i < count && found < 0; ++i) {
        found = ComboBox_GetItemData(list, i) == data ? i : -1;
    }
    ComboBox_SetCurSel(list, found);
}

} // namespace

void ParameterPanel::Command(int id, int notification) {
    Row* const row = isRefreshing_ ? nullptr : RowOf(id);
    if (row == nullptr) {
        return;
    }
    const int part = id - row->id;
    if (part == IDC_PART_EDIT && notification == EN_CHANGE) {
        Edited(*row);
    } else if (part == IDC_PART_CHOICE && notification == CBN_SELCHANGE) {
        Chosen(*row);
    } else if (part == IDC_PART_CHOICE && notification == CBN_DROPDOWN && IsOtherPicture(*row->parameter)) {
        FillChoices(*row); // others may have been opened
        RefreshRow(*row, nullptr);
    } else if (part == IDC_PART_FLAG && notification == BN_CLICKED) {
        const LONG set = Button_GetCheck(Part(*row, IDC_PART_FLAG)) == BST_CHECKED ? 1 : 0;
        setup_->values.Set(row->parameter->name, set != 0 ? catalogue::Value(set) : catalogue::Value());
        owner_.ValuesChanged();
    } else if (part == IDC_PART_BUTTON && notification == BN_CLICKED) {
        ChooseFromDialog(*row);
    }
}

void ParameterPanel::Slide(HWND slider) {
    Row* const row = RowOf(GetDlgCtrlID(slider));
    if (row == nullptr || !row->scale) {
        return;
    }
    const auto position = static_cast<int>(SendMessageW(slider, TBM_GETPOS, 0, 0));
    const double number = row->scale->NumberAt(position);
    if (setup_->values.Set(row->parameter->name, ValueOf(*row->parameter, number))) {
        row->mistake.clear();
        RefreshRow(*row, slider);
        RefreshSizes(*row);
        owner_.ValuesChanged();
    }
}

void ParameterPanel::Edited(Row& row) {
    const HWND edit = Part(row, IDC_PART_EDIT);
    const std::string before = setup_->values.Text(row.parameter->name);
    row.mistake = setup_->values.SetText(row.parameter->name, Utf8(TextOfWindow(edit)));
    RefreshRow(row, edit);
    RefreshSizes(row);
    if (!row.mistake.empty() || setup_->values.Text(row.parameter->name) != before) {
        owner_.ValuesChanged();
    }
}

void ParameterPanel::Chosen(Row& row) {
    const HWND list = Part(row, IDC_PART_CHOICE);
    const int index = ComboBox_GetCurSel(list);
    const LPARAM data = ComboBox_GetItemData(list, index);
    const std::string name = row.parameter->name;
    if (IsOtherPicture(*row.parameter)) {
        if (data == -1) {
            RefreshRow(row, nullptr); // until there is another
            owner_.OpenAnother(name);
            return;
        }
        setup_->pictures[name] = static_cast<int>(data);
    } else if (row.parameter->kind == Kind::kKernel) {
        setup_->values.SetText(name, Utf8(TextOfWindow(list)));
    } else {
        setup_->values.Set(name, static_cast<LONG>(data));
    }
    owner_.ValuesChanged();
}

void ParameterPanel::ChooseFromDialog(Row& row) {
    if (row.parameter->kind != Kind::kKernel) {
        return ChooseColour(row);
    }
    const std::vector<std::wstring> names = AskForFilesToOpen(GetAncestor(window_, GA_ROOT), IDS_FILTER_KERNEL, false);
    if (names.empty()) {
        return;
    }
    try {
        setup_->values.Set(row.parameter->name, LoadKernel(Utf8(names.front())));
        ComboBox_SetCurSel(Part(row, IDC_PART_CHOICE), -1);
        row.mistake.clear();
    } catch (const Failure& failure) {
        row.mistake = failure.what();
    }
    owner_.ValuesChanged();
}

void ParameterPanel::ChooseColour(Row& row) {
    static std::array<COLORREF, 16> own{};
    CHOOSECOLORW choice = {};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = GetAncestor(window_, GA_ROOT);
    choice.rgbResult = ColourOf(setup_->values.Get(row.parameter->name));
    choice.lpCustColors = own.data();
    choice.Flags = CC_RGBINIT | CC_FULLOPEN;
    if (ChooseColorW(&choice)) {
        setup_->values.Set(
            row.parameter->name,
            catalogue::Colour{GetRValue(choice.rgbResult), GetGValue(choice.rgbResult), GetBValue(choice.rgbResult)});
        RefreshRow(row, nullptr);
        owner_.ValuesChanged();
    }
}

void ParameterPanel::Refresh() {
    for (Row& row : rows_) {
        row.mistake.clear();
        RefreshRow(row, nullptr);
    }
}

// Sides and a factor for both exclude each other.
void ParameterPanel::RefreshSizes(const Row& changed) {
    for (const Row& row : rows_) {
        const bool isSize = row.parameter->kind == Kind::kWidth || row.parameter->kind == Kind::kHeight ||
                            row.parameter->kind == Kind::kScale;
        if (isSize && row.id != changed.id && row.mistake.empty()) {
            RefreshRow(row, nullptr);
        }
    }
}

// `except` is where the change came from.
void ParameterPanel::RefreshRow(const Row& row, HWND except) {
    isRefreshing_ = true;
    const catalogue::Parameter& parameter = *row.parameter;
    const catalogue::Value& value = setup_->values.Get(parameter.name);
    const double number = NumberOf(parameter, value, picture_);
    if (const HWND slider = Part(row, IDC_PART_SLIDER); slider != nullptr && slider != except) {
        SendMessageW(slider, TBM_SETPOS, TRUE, row.scale->PositionOf(number));
    }
    if (const HWND edit = Part(row, IDC_PART_EDIT); edit != nullptr && edit != except) {
        std::string text = setup_->values.Text(parameter.name);
        if (text.empty() && parameter.kind == Kind::kInteger && parameter.need == catalogue::Need::kOptional) {
            text = std::to_string(static_cast<LONG>(parameter.standard));
        } else if (text.empty() && (parameter.kind == Kind::kReal || parameter.kind == Kind::kAngle)) {
            text = "0";
        } else if (text.empty() && parameter.kind == Kind::kColour) {
            text = "0,0,0";
        }
        if (Wide(text) != TextOfWindow(edit)) {
            SetWindowTextW(edit, Wide(text).c_str());
        }
    }
    if (const HWND flag = Part(row, IDC_PART_FLAG); flag != nullptr) {
        const LONG* const set = std::get_if<LONG>(&value);
        Button_SetCheck(flag, set != nullptr && *set != 0 ? BST_CHECKED : BST_UNCHECKED);
    }
    if (const HWND list = Part(row, IDC_PART_CHOICE); list != nullptr) {
        const auto chosen = setup_->pictures.find(parameter.name);
        if (IsOtherPicture(parameter)) {
            FillChoices(row);
            SelectItemWith(list, chosen != setup_->pictures.end() ? chosen->second : 0);
        } else if (parameter.kind == Kind::kChoice) {
            const LONG* const given = std::get_if<LONG>(&value);
            const bool known = given != nullptr || parameter.need == catalogue::Need::kOptional;
            SelectItemWith(list, known ? static_cast<LPARAM>(number) : -1);
        } else if (parameter.kind == Kind::kKernel) {
            ComboBox_SetCurSel(list, IndexOfKernel(value));
        }
    }
    if (const HWND button = Part(row, IDC_PART_BUTTON); button != nullptr) {
        InvalidateRect(button, nullptr, TRUE);
    }
    isRefreshing_ = false;
}

void ParameterPanel::DrawColour(const DRAWITEMSTRUCT& item) const {
    const HWND button = item.hwndItem;
    RECT place = item.rcItem;
    const bool down = (item.itemState & ODS_SELECTED) != 0;
    DrawFrameControl(item.hDC, &place, DFC_BUTTON, DFCS_BUTTONPUSH | (down ? DFCS_PUSHED : 0U));
    const Dots dots(window_);
    InflateRect(&place, -dots(4), -dots(4));
    for (const Row& row : rows_) {
        if (Part(row, IDC_PART_BUTTON) == button) {
            const catalogue::Value& value = setup_->values.Get(row.parameter->name);
            const bool isNone = value.index() == 0 && row.parameter->kind == Kind::kOptionalColour;
            const GdiObject<HBRUSH> brush(CreateSolidBrush(ColourOf(value)));
            if (isNone) {
                DrawTextW(item.hDC, Text(IDS_NO_PICTURE_CHOSEN).c_str(), -1, &place,
                          DT_CENTER | DT_VCENTER | DT_SINGLELINE);
            } else {
                FillRect(item.hDC, &place, brush.Get());
            }
        }
    }
    if ((item.itemState & ODS_FOCUS) != 0) {
        InflateRect(&place, dots(1), dots(1));
        DrawFocusRect(item.hDC, &place);
    }
}
