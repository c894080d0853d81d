// The versions of a picture that undo and redo go to.
#ifndef QV8_WINDOW_HISTORY_H
#define QV8_WINDOW_HISTORY_H

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "pictures/picture.h"
#include "tools/selection.h"

using SharedPicture = std::shared_ptr<const Picture>;

struct Version {
    SharedPicture image;
    bool alpha = false; // the fourth bytes are alpha
    Selection selection;
    std::string made; // the name of the effect that made it; empty for the first

    std::uint64_t Bytes() const;
};

class History {
public:
    explicit History(Version first) {
        versions_.push_back(std::move(first));
    }

    const Version& Current() const {
        return versions_[current_];
    }
    // For the selection, which comes and goes with its version.
    Version& Current() {
        return versions_[current_];
    }

    // Returns what was undone, which is forgotten.
    std::vector<Version> Add(Version version);

    bool CanUndo() const {
        return current_ > 0;
    }
    bool CanRedo() const {
        return current_ + 1 < versions_.size();
    }
    void Undo() {
        current_ -= CanUndo() ? std::size_t{1} : 0;
    }
    void Redo() {
        current_ += CanRedo() ? std::size_t{1} : 0;
    }
    // The effect that Redo() brings back.
    const std::string& NextMade() const {
        return versions_[current_ + 1].made;
    }

    // The current version is the one in the file from now on.
    void MarkSaved() {
        saved_ = Current().image;
    }
    bool IsSaved() const {
        return saved_ == Current().image;
    }

    // Of all versions but the current one.
    std::uint64_t BytesKept() const;

    // Forgets the version that is farthest away, the oldest first, and returns it. There must be one.
    Version DropOne();

    // All versions, for one who closes the picture.
    std::vector<Version> Release() {
        return std::move(versions_);
    }

private:
    std::vector<Version> versions_;
    std::size_t current_ = 0;
    SharedPicture saved_;
};

// Forgets versions, where most is kept, until all histories together keep no more than that, and returns them: large
// pictures take long to be freed, and the caller may know a better time.
std::vector<Version> KeepWithin(std::span<History* const> histories, std::uint64_t mostBytes);

std::uint64_t BytesKept(std::span<History* const> histories);

#endif
