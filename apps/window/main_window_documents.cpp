// The pictures that are open, and which of them is in front.
#include "main_window.h"

#include <algorithm>
#include <utility>

#include <commctrl.h>

#include "commands.h"
#include "texts.h"

Document* MainWindow::Front() const {
    return front_ < documents_.size() ? documents_[front_].get() : nullptr;
}

Document* MainWindow::WithId(int id) const {
    const auto at = std::find_if(documents_.begin(), documents_.end(), [id](const auto& d) { return d->id == id; });
    return at == documents_.end() ? nullptr : at->get();
}

Document* MainWindow::Other(int id) const {
    Document* const document = WithId(id);
    return document != Front() ? document : nullptr;
}

std::vector<History*> MainWindow::Histories() const {
    std::vector<History*> histories;
    std::transform(documents_.begin(), documents_.end(), std::back_inserter(histories),
                   [](const auto& document) { return &document->history; });
    return histories;
}

std::vector<OpenPicture> MainWindow::OtherPictures() const {
    std::vector<OpenPicture> others;
    for (const auto& document : documents_) {
        if (document.get() != Front()) {
            others.push_back({document->id, document->name});
        }
    }
    return others;
}

// One that no other picture has.
std::wstring MainWindow::NewName(const std::wstring& wanted) const {
    const auto isTaken = [this](const std::wstring& name) {
        return std::any_of(documents_.begin(), documents_.end(), [&](const auto& d) { return d->name == name; });
    };
    std::wstring name = wanted;
    for (int number = 2; isTaken(name); ++number) {
        name = wanted + L" " + std::to_wstring(number);
    }
    return name;
}

void MainWindow::AddDocument(std::unique_ptr<Document> document) {
    documents_.push_back(std::move(document));
    FillTabs();
    GoTo(documents_.size() - 1);
}

void MainWindow::FillTabs() {
    TabCtrl_DeleteAllItems(tabs_);
    int index = 0;
    for (const auto& document : documents_) {
        std::wstring name = document->name;
        TCITEMW item = {};
        item.mask = TCIF_TEXT;
        item.pszText = name.data();
        SendMessageW(tabs_, TCM_INSERTITEMW, static_cast<WPARAM>(index++), reinterpret_cast<LPARAM>(&item));
    }
    TabCtrl_SetCurSel(tabs_, static_cast<int>(front_));
    if (documents_.size() <= 1) {
        Layout(); // which shows and hides them
    }
}

void MainWindow::GoTo(std::size_t index) {
    front_ = index;
    TabCtrl_SetCurSel(tabs_, static_cast<int>(index));
    isPreviewWanted_ = false;
    ShowFront();
}

void MainWindow::GoBy(int step) {
    const auto count = static_cast<int>(documents_.size());
    GoTo(static_cast<std::size_t>((static_cast<int>(front_) + step + count) % count));
}

void MainWindow::ShowFront() {
    StopPreview();
    const Document* const front = Front();
    tool_.reset();
    if (front == nullptr) {
        areaForm_.reset();
        canvas_->Show(nullptr, {}, true);
        canvas_->SetSelection({});
    } else {
        canvas_->Show(front->levels, front->view, front->fits);
        canvas_->SetSelection(front->history.Current().selection);
    }
    if (chosen_) {
        ChooseOther();
        ShowHelp({});
    }
    panel_->Show(Setup(), front != nullptr ? front->Size() : Extent{}, font_.Get());
    MakeTool();
    ShowState();
    MakeLevels();
}

void MainWindow::MakeLevels() {
    Document* const front = Front();
    if (front == nullptr || front->levels->IsComplete()) {
        return;
    }
    levelMaker_.Start([this, id = front->id, image = front->Image()](const std::atomic<bool>& stop) {
        auto levels = std::make_shared<PictureLevels>(image);
        levels->MakeSmaller([&stop](int) { return !stop; });
        wayBack_.Post([this, id, levels] {
            Document* const document = WithId(id);
            if (document == nullptr || document->Image() != levels->Whole()) {
                return;
            }
            document->levels = levels;
            if (document == Front()) {
                canvas_->ImproveLevels(levels);
                UpdatePreview();
            }
        });
    });
}
