// A picture that is open in the window.
#ifndef QV8_WINDOW_DOCUMENT_H
#define QV8_WINDOW_DOCUMENT_H

#include <optional>
#include <string>
#include <utility>

#include "model/effect_run.h"
#include "pictures/formats.h"
#include "system/text.h"

struct Document {
    Document(int number, std::wstring title, Version first)
        : id(number), name(std::move(title)), history(std::move(first)) {
        RenewLevels();
    }

    int id;            // never used again
    std::wstring name; // as the tab shows it
    std::wstring path; // of its file; empty when it has none
    Metadata metadata;
    History history;
    SharedLevels levels; // of the current version
    ViewMapping view;
    bool fits = true; // the view follows the size of the window

    const SharedPicture& Image() const {
        return history.Current().image;
    }
    Extent Size() const {
        const LockedPicture locked(*Image());
        return {static_cast<double>(locked.Width()), static_cast<double>(locked.Height())};
    }
    PictureSource Source() const {
        const Version& version = history.Current();
        return {version.image, version.alpha, version.selection, levels, Utf8(name)};
    }
    // The current version is another one: it has no smaller levels yet.
    void RenewLevels() {
        levels = std::make_shared<const PictureLevels>(Image());
    }
};

#endif
