// What is selected of a picture, the tools that draw on it, and the clipboard.
#include "main_window.h"

#include <algorithm>
#include <utility>

#include "chains/clipboard.h"
#include "commands.h"
#include "main_window_task.h"
#include "system/file_dialogs.h"
#include "texts.h"

namespace {

constexpr LONG kTolerance = 32;

} // namespace

// A selection that takes time to make: it looks at all pixels, or at a file.
template <class Make>
void MainWindow::SelectByTask(Make make) {
    const auto work = [make, source = Front()->Source()](const std::atomic<bool>&) { return make(source); };
    StartTask(Text(IDS_SELECTING), IDS_MASK_FAILED, work,
              [this](Selection& selection) { SetSelection(std::move(selection)); });
}

bool MainWindow::SelectCommand(int id) {
    switch (id) {
    case ID_SELECT_ALL:
        SelectByTask([](const PictureSource& source) { return SelectAll(source.image->Handle()); });
        return true;
    case ID_SELECT_NONE:
        SetSelection({});
        return true;
    case ID_SELECT_INVERT:
        SelectByTask([](const PictureSource& source) { return Inverted(source.selection); });
        return true;
    case ID_SELECT_MAKE_MASK:
        SelectByTask([](const PictureSource& source) { return AsMaskOf(source.image->Handle(), source.selection); });
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

void MainWindow::LoadMask(const std::wstring& path) {
    SelectByTask([path](const PictureSource& source) { return LoadSelection(Utf8(path), source.image->Handle()); });
}

void MainWindow::SaveMask(const std::wstring& path) {
    if (Front()->history.Current().selection.IsEmpty()) {
        return Say(Text(IDS_NO_SELECTION), MB_ICONINFORMATION);
    }
    const auto save = [path, source = Front()->Source()](const std::atomic<bool>&) {
        SaveSelection(Utf8(path), source.image->Handle(), source.selection);
        return path;
    };
    StartTask(Text(IDS_SAVING, {NameOf(path)}), IDS_SAVE_FAILED, save,
              [this](const std::wstring& saved) { ShowStatus(STATUS_MESSAGE, Text(IDS_SAVED, {NameOf(saved)})); });
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
            if (const Document* const other = Other(id); other != nullptr) {
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
    SelectByTask([colour](const PictureSource& source) {
        return SelectColour(source.image->Handle(), {}, {GetRValue(colour), GetGValue(colour), GetBValue(colour)}, 0,
                            kTolerance);
    });
}

void MainWindow::OpenAnother(const std::string& parameter) {
    if (const auto names = AskForFilesToOpen(window_, IDS_FILTER_OPEN, false); !names.empty()) {
        LoadFile(names.front(), parameter);
    }
}

void MainWindow::Copy() {
    const auto copy = [window = window_, source = Front()->Source()](const std::atomic<bool>& stop) {
        CopyToClipboard(
            *source.image, source.name, [&stop](int) { return !stop; }, window);
        return Text(IDS_COPIED);
    };
    StartTask(Text(IDS_COPYING), IDS_CLIPBOARD_FAILED, copy,
              [this](const std::wstring& copied) { ShowStatus(STATUS_MESSAGE, copied); });
}

void MainWindow::Paste(bool into) {
    const auto take = [window = window_](const std::atomic<bool>& stop) {
        return PictureFromClipboard(
            kMostPixels, [&stop](int) { return !stop; }, window);
    };
    StartTask(Text(IDS_PASTING), IDS_CLIPBOARD_FAILED, take,
              [this, into](Picture& picture) { AddPasted(std::move(picture), into); });
}

void MainWindow::AddPasted(Picture picture, bool into) {
    const std::size_t base = front_;
    Version version;
    version.image = std::make_shared<const Picture>(std::move(picture));
    AddDocument(std::make_unique<Document>(++lastId_, NewName(Text(IDS_CLIPBOARD_NAME)), std::move(version)));
    if (!into) {
        return;
    }
    // It is pasted by the effect that does so, where it can be moved and turned before.
    const int id = Front()->id;
    const auto isPaste = [](const EffectSetup& setup) { return setup.values.Has("pasted"); };
    const auto paste = std::find_if(setups_.begin(), setups_.end(), isPaste);
    *paste = EffectSetup(paste->values.Effect());
    paste->pictures["pasted"] = id;
    GoTo(base);
    ChooseEffect(static_cast<std::size_t>(paste - setups_.begin()));
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
