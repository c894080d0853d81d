// Opening, saving and closing pictures.
#include "main_window.h"

#include <algorithm>
#include <utility>

#include <commctrl.h>
#include <shellapi.h>

#include "commands.h"
#include "main_window_task.h"
#include "model/recent_files.h"
#include "pictures/image_file.h"
#include "system/file_dialogs.h"
#include "texts.h"

namespace {

constexpr std::size_t kMostRecent = 10;

std::vector<std::wstring> NamesIn(const COPYDATASTRUCT& data) {
    const auto* const text = static_cast<const wchar_t*>(data.lpData);
    const std::wstring all(text, data.cbData / sizeof(wchar_t));
    std::vector<std::wstring> names;
    for (std::size_t at = 0; at < all.size();) {
        const std::size_t end = std::min(all.find(L'\0', at), all.size());
        if (end > at) {
            names.push_back(all.substr(at, end - at));
        }
        at = end + 1;
    }
    return names;
}

} // namespace

bool MainWindow::FileCommand(int id) {
    if (id >= ID_FILE_RECENT_FIRST && id <= ID_FILE_RECENT_LAST) {
        const auto index = static_cast<std::size_t>(id - ID_FILE_RECENT_FIRST);
        if (index < settings_.recent.size()) {
            OpenFiles({settings_.recent[index]});
        }
        return true;
    }
    switch (id) {
    case ID_FILE_OPEN:
        OpenFiles(AskForFilesToOpen(window_, IDS_FILTER_OPEN, true));
        return true;
    case ID_FILE_SAVE:
        Save(nullptr);
        return true;
    case ID_FILE_SAVE_AS:
        SaveAs(nullptr);
        return true;
    case ID_FILE_CLOSE:
        Close(Front()->id, nullptr);
        return true;
    case ID_FILE_EXIT:
        Finish();
        return true;
    default:
        return false;
    }
}

void MainWindow::OpenFiles(const std::vector<std::wstring>& names) {
    for (const std::wstring& name : names) {
        LoadFile(name, {});
    }
}

void MainWindow::LoadFile(const std::wstring& name, const std::string& forParameter) {
    toOpen_.push_back({name, forParameter});
    LoadNext();
}

void MainWindow::LoadNext() {
    if (toOpen_.empty() || task_.IsBusy()) {
        return;
    }
    const Waiting next = toOpen_.front();
    toOpen_.erase(toOpen_.begin());
    const auto load = [next](const std::atomic<bool>&) { return LoadPicture(Utf8(next.name)); };
    StartTask(Text(IDS_OPENING, {NameOf(next.name)}), IDS_OPEN_FAILED, load,
              [this, next](LoadedPicture& loaded) { Opened(next.name, std::move(loaded), next.parameter); });
}

void MainWindow::Opened(const std::wstring& name, LoadedPicture loaded, const std::string& forParameter) {
    Version first;
    first.image = std::make_shared<const Picture>(std::move(loaded.picture));
    first.alpha = loaded.metadata.alpha;
    auto document = std::make_unique<Document>(++lastId_, NameOf(name), std::move(first));
    document->path = name;
    document->metadata = std::move(loaded.metadata);
    document->history.MarkSaved();
    const int id = document->id;
    const int before = Front() != nullptr ? Front()->id : 0;
    AddDocument(std::move(document));
    Remember(name);
    ShowStatus(STATUS_MESSAGE,
               loaded.notes.empty() ? Text(IDS_READY) : Text(IDS_NOTE, {NameOf(name), Wide(loaded.notes.front())}));
    if (!forParameter.empty() && WithId(before) != nullptr) { // a second picture stays behind
        setups_[*chosen_].pictures[forParameter] = id;
        const auto at =
            std::find_if(documents_.begin(), documents_.end(), [&](const auto& d) { return d->id == before; });
        GoTo(static_cast<std::size_t>(at - documents_.begin()));
        ValuesChanged();
    }
}

void MainWindow::Remember(const std::wstring& path) {
    AddRecent(settings_.recent, path, kMostRecent);
    SaveSettings(settings_);
}

void MainWindow::Save(Action then) {
    if (Front()->path.empty()) {
        SaveAs(std::move(then));
    } else {
        SaveTo(Front()->path, std::move(then));
    }
}

void MainWindow::SaveAs(Action then) {
    const Document& front = *Front();
    const std::wstring path = AskForFileToSave(window_, IDS_FILTER_SAVE, front.path.empty() ? front.name : front.path);
    if (!path.empty()) {
        SaveTo(path, std::move(then));
    }
}

void MainWindow::SaveTo(const std::wstring& path, Action then) {
    const Document& front = *Front();
    const Version version = front.history.Current();
    Metadata metadata = front.metadata;
    metadata.alpha = version.alpha;
    const auto save = [path, version, metadata](const std::atomic<bool>&) {
        WriteOptions options;
        options.format = FormatForName(Utf8(path));
        PreparePicture(*version.image, metadata, Utf8(path), options)->Commit();
        return WhatIsLost(*version.image, metadata, options);
    };
    const auto saved = [this, path, id = front.id, then = std::move(then)](const std::vector<std::string>& lost) {
        Document* const document = WithId(id);
        document->path = path;
        document->name = NameOf(path);
        document->history.MarkSaved();
        Remember(path);
        FillTabs();
        ShowState();
        const std::wstring text = Text(IDS_SAVED, {document->name});
        ShowStatus(STATUS_MESSAGE, lost.empty() ? text : Text(IDS_NOTE, {text, Wide(lost.front())}));
        if (then) {
            then();
        }
    };
    StartTask(Text(IDS_SAVING, {NameOf(path)}), IDS_SAVE_FAILED, save, saved);
}

// Asks when something would be lost. What was asked for goes on in `then`, perhaps after saving.
bool MainWindow::AskThenClose(Action then) {
    const Document& front = *Front();
    if (front.history.IsSaved()) {
        return true;
    }
    const int answer = MessageBoxW(window_, Text(IDS_ASK_SAVE, {front.name}).c_str(), Text(IDS_TITLE).c_str(),
                                   MB_YESNOCANCEL | MB_ICONQUESTION);
    if (answer == IDYES) {
        Save(std::move(then));
    }
    return answer == IDNO;
}

void MainWindow::Close(int id, const Action& then) {
    const auto goOn = [this, id, then] {
        Remove(id);
        if (then) {
            then();
        }
    };
    if (AskThenClose(goOn)) {
        goOn();
    }
}

void MainWindow::Remove(int id) {
    const auto at = std::find_if(documents_.begin(), documents_.end(), [id](const auto& d) { return d->id == id; });
    if (at == documents_.end()) {
        return;
    }
    StopPreview();
    canvas_->Show(nullptr, {}, true);
    tool_.reset();
    FreeElsewhere((*at)->history.Release());
    documents_.erase(at);
    for (EffectSetup& setup : setups_) {
        std::erase_if(setup.pictures, [id](const auto& chosen) { return chosen.second == id; });
    }
    front_ = std::min(front_, documents_.empty() ? 0 : documents_.size() - 1);
    FillTabs();
    ShowFront();
    ShowStatus(STATUS_MESSAGE, Text(IDS_READY));
}

// One after the other, each with its question; then the window goes.
void MainWindow::CloseAll() {
    if (Front() != nullptr) {
        return Close(Front()->id, [this] { CloseAll(); });
    }
    settings_.place.length = sizeof settings_.place;
    GetWindowPlacement(window_, &settings_.place);
    SaveSettings(settings_);
    DestroyWindow(window_);
}

void MainWindow::DropFiles(HDROP drop) {
    std::vector<std::wstring> names;
    const UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i != count; ++i) {
        std::wstring name(DragQueryFileW(drop, i, nullptr, 0) + 1, L'\0');
        DragQueryFileW(drop, i, name.data(), static_cast<UINT>(name.size()));
        name.pop_back();
        names.push_back(name);
    }
    DragFinish(drop);
    OpenFiles(names);
}

bool MainWindow::Handed(const COPYDATASTRUCT& data) {
    const std::vector<std::wstring> names = NamesIn(data);
    if (data.dwData == QV8WINDOW_OPEN) {
        OpenFiles(names);
        return true;
    }
    if (task_.IsBusy() || Front() == nullptr || names.empty()) {
        return false;
    }
    switch (data.dwData) {
    case QV8WINDOW_SAVE:
        SaveTo(names.front(), nullptr);
        return true;
    case QV8WINDOW_LOAD_MASK:
        LoadMask(names.front());
        return true;
    case QV8WINDOW_SAVE_MASK:
        SaveMask(names.front());
        return true;
    default:
        return false;
    }
}
