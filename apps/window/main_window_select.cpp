// What is selected of a picture, the tools that draw on it, and the clipboard.
#include "main_window.h"

#include <utility>

#include "chains/clipboard.h"
#include "commands.h"
#include "pictures/failure.h"
#include "strings.h"
#include "system/file_dialogs.h"

namespace {

constexpr LONG kTolerance = 32;

} // namespace

// Shows why it failed, if it did.
template <class Function>
void MainWindow::Try(UINT failure, Function function) {
    try {
        function();
    } catch (const Failure& reason) {
        Complain(failure, reason.what());
    }
}

bool MainWindow::SelectCommand(int id) {
    const auto image = [this] { return Front()->Image()->Handle(); };
    const auto current = [this]() -> const Selection& { return Front()->history.Current().selection; };
    switch (id) {
    case ID_SELECT_ALL:
        Try(IDS_MASK_FAILED, [&] { SetSelection(SelectAll(image())); });
        return true;
    case ID_SELECT_NONE:
        SetSelection({});
        return true;
    case ID_SELECT_INVERT:
        Try(IDS_MASK_FAILED, [&] { SetSelection(Inverted(current())); });
        return true;
    case ID_SELECT_MAKE_MASK:
        Try(IDS_MASK_FAILED, [&] { SetSelection(AsMaskOf(image(), current())); });
        return true;
    case ID_SELECT_RECTANGLE:
        UseAreaTool(AreaForm::kRectangle);
        return true;
    case ID_SELECT_ELLIPSE:
        UseAreaTool(AreaForm::kEllipse);
        return true;
    case ID_SELECT_POLYGON:
        UseAreaTool(AreaForm::kPolygon);
        return true;
    case ID_SELECT_COLOUR:
        UseAreaTool(AreaForm::kColour);
        return true;
    case ID_SELECT_HAND:
        UseAreaTool({});
        return true;
    case ID_SELECT_LOAD_MASK:
        if (const auto names = AskForFilesToOpen(window_, IDS_FILTER_OPEN, false); !names.empty()) {
            LoadMask(names.front());
        }
        return true;
    case ID_SELECT_SAVE_MASK:
        if (const std::wstring path = AskForFileToSave(window_, IDS_FILTER_MASK, L"mask"); !path.empty()) {
            SaveMask(path);
        }
        return true;
    default:
        return false;
    }
}

void MainWindow::SetSelection(Selection selection) {
    Front()->history.Current().selection = std::move(selection);
    canvas_->SetSelection(Front()->history.Current().selection);
    UpdatePreview();
}

void MainWindow::LoadMask(std::wstring path) {
    Try(IDS_MASK_FAILED, [&] { SetSelection(LoadSelection(Utf8(path), Front()->Image()->Handle())); });
}

void MainWindow::SaveMask(std::wstring path) {
    if (Front()->history.Current().selection.IsEmpty()) {
        return Say(Text(IDS_NO_SELECTION), MB_ICONINFORMATION);
    }
    Try(IDS_SAVE_FAILED, [&] {
        SaveSelection(Utf8(path), Front()->Image()->Handle(), Front()->history.Current().selection);
        ShowStatus(STATUS_MESSAGE, Text(IDS_SAVED, {NameOf(path)}));
    });
}

void MainWindow::UseAreaTool(std::optional<AreaForm> form) {
    areaForm_ = form;
    MakeTool();
    if (form) {
        ShowStatus(STATUS_MESSAGE, Text(*form == AreaForm::kColour ? IDS_PICK_COLOUR : IDS_DRAW_AREA));
    }
}

// The tool of the area that is being drawn, or else of the effect.
void MainWindow::MakeTool() {
    canvas_->SetTool(nullptr);
    tool_.reset();
    hasEffectTool_ = false;
    const Document* const front = Front();
    if (front == nullptr) {
        return;
    }
    if (areaForm_) {
        tool_ = MakeAreaTool(*areaForm_, front->Size());
    } else if (chosen_) {
        ToolSubject subject{front->Size(), nullptr, {}};
        for (const auto& [parameter, id] : Setup()->pictures) {
            if (const Document* const other = WithId(id); other != nullptr) {
                subject.second = other->Image()->Handle();
                subject.secondSize = other->Size();
            }
        }
        tool_ = MakeEffectTool(*ChosenEffect(), subject);
        hasEffectTool_ = tool_ != nullptr;
        FollowTool();
        if (tool_ != nullptr) {
            TakeValues(tool_->Values()); // where it puts what has no place yet
        }
    }
    canvas_->SetTool(tool_.get());
}

// The tool takes the values of the panel.
void MainWindow::FollowTool() {
    if (tool_ == nullptr || !hasEffectTool_) {
        return;
    }
    DrawnValues values;
    for (const Setting& setting : Setup()->values.Settings()) {
        if (setting.value.index() != 0) {
            values.push_back({setting.parameter->name, setting.value});
        }
    }
    tool_->Follow(values);
    canvas_->Redraw();
}

// The panel takes the values of the tool.
void MainWindow::TakeValues(const DrawnValues& values) {
    bool isChanged = false;
    for (const DrawnValue& drawn : values) {
        isChanged = Setup()->values.Set(drawn.name, drawn.value) || isChanged;
    }
    if (isChanged) {
        panel_->Refresh();
    }
}

void MainWindow::ToolChanged() {
    changedAt_ = GetTickCount();
    const DrawnValues values = tool_->Values();
    if (areaForm_ == AreaForm::kColour) {
        return SelectLike(values);
    }
    if (areaForm_) {
        return SetSelection(SelectionFrom(values));
    }
    TakeValues(values);
    isPreviewWanted_ = true;
    UpdatePreview();
}

void MainWindow::SelectLike(const DrawnValues& values) {
    const auto* const points = values.empty() ? nullptr : std::get_if<std::vector<POINT>>(&values.front().value);
    if (points == nullptr || points->empty()) {
        return;
    }
    const POINT at = points->front();
    const COLORREF colour = ColourAt({static_cast<double>(at.x), static_cast<double>(at.y)});
    Try(IDS_MASK_FAILED, [&] {
        SetSelection(SelectColour(Front()->Image()->Handle(), {},
                                  {GetRValue(colour), GetGValue(colour), GetBValue(colour)}, 0, kTolerance));
    });
}

void MainWindow::OpenAnother(const std::string& parameter) {
    if (const auto names = AskForFilesToOpen(window_, IDS_FILTER_OPEN, false); !names.empty()) {
        LoadFile(names.front(), parameter);
    }
}

void MainWindow::Copy() {
    Try(IDS_CLIPBOARD_FAILED, [this] {
        CopyToClipboard(
            *Front()->Image(), Utf8(Front()->name), [](int) { return true; }, window_);
        ShowStatus(STATUS_MESSAGE, Text(IDS_COPIED));
    });
}

void MainWindow::Paste(bool into) {
    Try(IDS_CLIPBOARD_FAILED, [this, into] {
        const int base = into ? Front()->id : 0;
        Version version;
        version.image = std::make_shared<const Picture>(PictureFromClipboard(
            kMostPixels, [](int) { return true; }, window_));
        AddDocument(
            std::make_unique<Document>(++lastId_, NewName(Text(IDS_CLIPBOARD_NAME, {L""})), std::move(version)));
        if (!into) {
            return;
        }
        // It is pasted by the effect that does so, where it can be moved and turned before.
        const int id = Front()->id;
        for (std::size_t i = 0; i != setups_.size(); ++i) {
            if (setups_[i].values.Effect().name == std::string("paste-image")) {
                setups_[i] = EffectSetup(setups_[i].values.Effect());
                setups_[i].pictures["pasted"] = id;
                for (std::size_t d = 0; d != documents_.size(); ++d) {
                    front_ = documents_[d]->id == base ? d : front_;
                }
                GoTo(front_);
                ChooseEffect(i);
            }
        }
    });
}

// The effects of the clipboard are commands of the menu. Returns whether it is one of them.
bool MainWindow::ClipboardEffect(const catalogue::Effect& effect) {
    if (effect.family != catalogue::Family::kClipboard) {
        return false;
    }
    const std::string name = effect.name;
    if (name == "is-clip-brd-data") {
        const bool has = QV8IsClipBrdData(window_) != 0;
        ShowStatus(STATUS_MESSAGE, Text(has ? IDS_CLIPBOARD_HAS : IDS_CLIPBOARD_HAS_NOT));
        return true;
    }
    Command(name == "set-to-clip-brd"     ? ID_EDIT_COPY
            : name == "get-from-clip-brd" ? ID_EDIT_PASTE_NEW
                                          : ID_EDIT_CLEAR_CLIPBOARD,
            0);
    return true;
}
