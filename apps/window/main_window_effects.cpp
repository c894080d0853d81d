// Choosing an effect, its preview, applying it, undoing it.
#include "main_window.h"

#include <utility>

#include <commctrl.h>

#include "catalogue/picture_header.h"
#include "catalogue/text.h"
#include "commands.h"
#include "main_window_task.h"
#include "pictures/failure.h"
#include "texts.h"

namespace {

// A preview that is nearly done is worth more than one that begins anew: while a slider moves there would be none.
constexpr DWORD kWorthFinishing = 60; // milliseconds

// The companion's dialog on the thread that works, in front of a window.
class ProgressDialog {
public:
    ProgressDialog(HWND owner, const std::string& title)
        : isOpen_(PercentDlgOpen(reinterpret_cast<DWORD_PTR>(owner), reinterpret_cast<DWORD_PTR>(title.c_str()), 0) !=
                  0) {}
    ProgressDialog(const ProgressDialog&) = delete;
    ProgressDialog& operator=(const ProgressDialog&) = delete;
    ~ProgressDialog() {
        if (isOpen_) {
            PercentDlgClose();
        }
    }
    bool Report(int percent) const {
        return !isOpen_ || PercentProgress(percent, 100, 0, 100, 0) != 0;
    }

private:
    bool isOpen_;
};

bool MakesNewPicture(const catalogue::Effect& effect) {
    return effect.family == catalogue::Family::kCreation || effect.name == std::string("check-secret-image");
}

// Others are not for a preview: they make another picture, or exchange one with the clipboard.
bool HasPreview(const catalogue::Effect& effect) {
    return effect.TakesPicture() && effect.family != catalogue::Family::kClipboard && !MakesNewPicture(effect);
}

bool HaveOneSize(const Picture& picture, const Picture& other) {
    const LockedPicture a(picture);
    const LockedPicture b(other);
    return a.Width() == b.Width() && a.Height() == b.Height();
}

} // namespace

EffectSetup* MainWindow::Setup() {
    return chosen_ ? &setups_[*chosen_] : nullptr;
}

const catalogue::Effect* MainWindow::ChosenEffect() const {
    return chosen_ ? &setups_[*chosen_].values.Effect() : nullptr;
}

void MainWindow::ChooseEffect(std::size_t index) {
    chosen_ = index;
    areaForm_.reset();
    if (ParameterValues& values = Setup()->values; values.Has("kernel") && values.Get("kernel").index() == 0) {
        values.SetText("kernel", catalogue::KernelNames().front());
    }
    list_->Select(index);
    ChooseOther();
    panel_->Show(Setup(), Front() != nullptr ? Front()->Size() : Extent{}, font_.Get());
    MakeTool();
    ShowHelp({});
    isPreviewWanted_ = true;
    UpdatePreview();
}

// The first of the other pictures, for an effect that needs one.
void MainWindow::ChooseOther() {
    const std::vector<OpenPicture> others = OtherPictures();
    for (const catalogue::Parameter& parameter : ChosenEffect()->Parameters()) {
        if (catalogue::IsPicture(parameter) && parameter.need == catalogue::Need::kRequired && !others.empty()) {
            int& id = Setup()->pictures[parameter.name];
            id = Other(id) != nullptr ? id : others.front().id;
        }
    }
}

// What the effect does, or what it waits for.
void MainWindow::ShowHelp(const std::wstring& obstacle) {
    std::wstring help = obstacle.empty() && chosen_ ? Wide(ChosenEffect()->help) : obstacle;
    CharUpperBuffW(help.data(), help.empty() ? 0 : 1);
    if (help != TextOfWindow(help_)) {
        SetWindowTextW(help_, help.c_str());
    }
}

void MainWindow::ResetEffect() {
    const std::size_t index = *chosen_;
    setups_[index] = EffectSetup(*ChosenEffect());
    ChooseEffect(index);
}

void MainWindow::ValuesChanged() {
    changedAt_ = GetTickCount();
    HGLOBAL second = nullptr;
    for (const auto& [parameter, id] : Setup()->pictures) {
        const Document* const other = Other(id);
        second = other != nullptr ? other->Image()->Handle() : second;
    }
    const auto shown = tool_ != nullptr ? tool_->Shown().pictures : std::vector<PlacedPicture>();
    const bool isForAnother = second != nullptr && (shown.empty() || shown.front().picture != second);
    if (tool_ == nullptr || !hasEffectTool_ || isForAnother) {
        MakeTool(); // which takes all values that there are
    }
    FollowTool();
    isPreviewWanted_ = true;
    UpdatePreview();
}

EffectRun MainWindow::Run() {
    EffectRun run{{}, Setup()->values, {}};
    if (ChosenEffect()->TakesPicture()) {
        run.subject = Front()->Source();
    } else {
        run.subject.name = run.values.Effect().name;
    }
    for (const auto& [parameter, id] : Setup()->pictures) {
        if (const Document* const other = Other(id); other != nullptr) {
            run.others.emplace(parameter, other->Source());
        }
    }
    return run;
}

// What to do about pictures of a depth that the effect does not take, or nothing.
std::wstring MainWindow::WrongDepth(const EffectRun& run) {
    const catalogue::Depths depths = run.values.Effect().depths;
    std::vector<const PictureSource*> sources{&run.subject};
    for (const auto& [parameter, source] : run.others) {
        if (parameter != "picture") { // a pattern, which is made of any
            sources.push_back(&source);
        }
    }
    for (const PictureSource* const source : sources) {
        if (source->image != nullptr && !catalogue::IsAmong(depths, source->image->Handle())) {
            const int bits = catalogue::HeaderOf(source->image->Handle())->biBitCount;
            return Text(depths == catalogue::Depths::kTrueColour24 ? IDS_NEEDS_COLOUR : IDS_NEEDS_GREY_OR_COLOUR,
                        {Wide(source->name), std::to_wstring(bits)});
        }
    }
    return {};
}

// What is still to be chosen or drawn, or nothing.
std::wstring MainWindow::MissingValue(const EffectRun& run) {
    for (const catalogue::Parameter& parameter : run.values.Effect().Parameters()) {
        if (parameter.need != catalogue::Need::kRequired) {
            continue;
        }
        if (catalogue::IsPicture(parameter) && !run.others.contains(parameter.name)) {
            return Text(IDS_NEEDS_SECOND, {Wide(TitleOf(parameter.name))});
        }
        if (!catalogue::IsPicture(parameter) && run.values.Get(parameter.name).index() == 0) {
            return Text(parameter.kind == catalogue::Kind::kPoints ? IDS_NEEDS_POINTS : IDS_NEEDS_VALUE,
                        {Wide(TitleOf(parameter.name))});
        }
    }
    return {};
}

// Why the effect cannot be run, and what to do; nothing when it can.
std::wstring MainWindow::Obstacle() {
    if (!chosen_) {
        return Text(IDS_CHOOSE_FIRST);
    }
    if (ChosenEffect()->TakesPicture() && Front() == nullptr) {
        return Text(IDS_NEEDS_PICTURE);
    }
    if (const std::string mistake = panel_->Mistake(); !mistake.empty()) {
        return Wide(mistake);
    }
    const EffectRun run = Run();
    const std::wstring missing = MissingValue(run);
    return missing.empty() ? WrongDepth(run) : missing;
}

void MainWindow::UpdatePreview() {
    if (!settings_.preview || !isPreviewWanted_ || task_.IsBusy() || Front() == nullptr || !chosen_ ||
        !HasPreview(*ChosenEffect())) {
        return StopPreview();
    }
    const std::wstring obstacle = Obstacle();
    ShowHelp(obstacle);
    if (!obstacle.empty()) {
        ShowStatus(STATUS_MESSAGE, obstacle);
        return StopPreview();
    }
    const auto work = [this, run = Run(), view = canvas_->Visible(), document = Front()->id,
                       effect = chosen_](const std::atomic<bool>& stop) {
        const DWORD begun = GetTickCount();
        const auto report = [&stop, begun](int) { return !stop || GetTickCount() - begun < kWorthFinishing; };
        std::optional<Preview> preview;
        std::wstring reason;
        try {
            preview = MakePreview(run, view, report);
        } catch (const Failure& failure) {
            if (failure.Code() == kExitCancelled) {
                return; // there is a newer one
            }
            reason = Wide(failure.what());
        } catch (const std::exception&) {
            reason = Text(IDS_OUT_OF_MEMORY);
        }
        wayBack_.Post([this, preview, reason, document, effect] {
            if (Front() != nullptr && Front()->id == document && chosen_ == effect && isPreviewWanted_) {
                canvas_->SetPreview(preview);
                if (!preview) {
                    ShowStatus(STATUS_MESSAGE, reason);
                }
            }
        });
    };
    previewMaker_.Start(work);
}

void MainWindow::StopPreview() {
    previewMaker_.Stop();
    canvas_->SetPreview({});
}

void MainWindow::PreviewPainted() {
    ++previewsPainted_;
    if (changedAt_ != 0) {
        ShowStatus(STATUS_MESSAGE, Text(IDS_PREVIEW_TIME, {std::to_wstring(GetTickCount() - changedAt_)}));
        changedAt_ = 0;
    }
}

void MainWindow::BeginTask(const std::wstring& doing) {
    StopPreview();
    ShowStatus(STATUS_MESSAGE, doing);
    EnableWindow(apply_, FALSE);
}

void MainWindow::EndTask() {
    task_.Finish();
    EnableWindow(apply_, TRUE);
    ShowStatus(STATUS_MESSAGE, Text(IDS_READY));
    if (closesAfterTask_) {
        closesAfterTask_ = false;
        toOpen_.clear();
        PostMessageW(window_, WM_CLOSE, 0, 0);
    }
    UpdatePreview();
    wayBack_.Post([this] { LoadNext(); });
}

void MainWindow::FailTask(UINT failure, const std::string& reason) {
    wayBack_.Post([this, failure, reason] {
        EndTask();
        if (failure == 0) {
            ShowStatus(STATUS_MESSAGE, Text(IDS_CANCELLED));
        } else {
            Complain(failure, reason);
        }
    });
}

void MainWindow::Apply() {
    if (chosen_ && ClipboardEffect(*ChosenEffect())) {
        return;
    }
    if (const std::wstring obstacle = Obstacle(); !obstacle.empty()) {
        return Say(obstacle, MB_ICONINFORMATION);
    }
    const EffectRun run = Run();
    const int id = Front() != nullptr ? Front()->id : 0;
    const std::string title = TitleOf(run.values.Effect().name);
    const DWORD begun = GetTickCount();
    isPreviewWanted_ = false;
    const auto make = [this, run, title](const std::atomic<bool>& stop) {
        const ProgressDialog dialog(window_, title);
        return ::Apply(run, [&](int percent) { return dialog.Report(percent) && !stop; });
    };
    StartTask(Wide(title), IDS_EFFECT_FAILED, make, [this, run, id, title, begun](ChainResult& result) {
        Applied(id, run.values.Effect().name, run.subject, std::move(result));
        ShowStatus(STATUS_MESSAGE, Text(IDS_APPLIED, {Wide(title), std::to_wstring(GetTickCount() - begun)}));
    });
}

void MainWindow::Applied(int documentId, const std::string& effect, const PictureSource& before, ChainResult result) {
    Document* const document = WithId(documentId);
    if (document == nullptr || MakesNewPicture(*catalogue::FindEffect(effect))) {
        return AddResult(before, effect, std::move(result));
    }
    Version version;
    version.image = std::make_shared<const Picture>(std::move(result.image));
    version.alpha = result.alpha;
    version.made = effect;
    if (result.mask) {
        version.selection.form = Selection::Form::kMask;
        version.selection.mask = std::make_shared<const Picture>(std::move(result.mask));
    } else if (HaveOneSize(*version.image, *document->Image())) {
        version.selection = document->history.Current().selection;
    }
    FreeElsewhere(document->history.Add(std::move(version)));
    document->RenewLevels();
    KeepToLimit();
    ShowFront();
}

void MainWindow::KeepToLimit() {
    FreeElsewhere(KeepWithin(Histories(), std::uint64_t{settings_.megabytes} << 20));
}

void MainWindow::AddResult(const PictureSource& before, const std::string& effect, ChainResult result) {
    Version version;
    version.image = std::make_shared<const Picture>(std::move(result.image));
    version.alpha = result.alpha;
    const std::wstring title = Wide(TitleOf(effect.c_str()));
    const std::wstring name =
        before.image != nullptr ? Text(IDS_RESULT_NAME, {title, Wide(before.name)}) : Text(IDS_UNTITLED);
    auto document = std::make_unique<Document>(++lastId_, NewName(name), std::move(version));
    if (before.image != nullptr && Front() != nullptr) {
        document->metadata = Front()->metadata;
    }
    AddDocument(std::move(document));
}

bool MainWindow::EditCommand(int id) {
    if (id >= ID_EDIT_MEMORY_FIRST && id <= ID_EDIT_MEMORY_LAST) {
        settings_.megabytes = 128U << (id - ID_EDIT_MEMORY_FIRST);
        KeepToLimit();
        ShowState();
        return true;
    }
    switch (id) {
    case ID_EDIT_UNDO:
    case ID_EDIT_REDO:
        ChangeVersion(id == ID_EDIT_REDO);
        return true;
    case ID_EDIT_UNDO_ALL:
        UndoAll();
        return true;
    case ID_EDIT_COPY:
        Copy();
        return true;
    case ID_EDIT_PASTE_NEW:
    case ID_EDIT_PASTE_INTO:
        Paste(id == ID_EDIT_PASTE_INTO);
        return true;
    case ID_EDIT_CLEAR_CLIPBOARD:
        QV8ClearClipBrd(window_);
        ShowStatus(STATUS_MESSAGE, Text(IDS_CLIPBOARD_CLEARED));
        return true;
    default:
        return false;
    }
}

void MainWindow::ChangeVersion(bool redo) {
    Document& front = *Front();
    if (redo) {
        front.history.Redo();
    } else {
        front.history.Undo();
    }
    front.RenewLevels();
    isPreviewWanted_ = false;
    ShowFront();
    ShowStatus(STATUS_MESSAGE, Text(IDS_READY));
}

void MainWindow::UndoAll() {
    while (Front()->history.CanUndo()) {
        Front()->history.Undo();
    }
    ChangeVersion(false);
}
