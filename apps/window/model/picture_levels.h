// A picture at its own size and at half, a quarter and so on of it, so that a window that shows it smaller reads few of
// its pixels.
#ifndef QV8_WINDOW_PICTURE_LEVELS_H
#define QV8_WINDOW_PICTURE_LEVELS_H

#include <vector>

#include "chains/progress.h"
#include "model/history.h"

struct Level {
    SharedPicture picture;
    double scale = 1; // of its sides to those of the whole picture, as nearly as whole pixels allow
};

class PictureLevels {
public:
    // The picture alone.
    explicit PictureLevels(SharedPicture whole);

    // Makes the smaller ones; fewer of them when memory is short or `report` says to stop.
    void MakeSmaller(const Report& report);

    // The smallest that is no smaller than `scale` asks for.
    const Level& AtLeast(double scale) const;

    const SharedPicture& Whole() const {
        return levels_.front().picture;
    }
    bool IsComplete() const {
        return isComplete_;
    }

private:
    std::vector<Level> levels_; // the largest first
    bool isComplete_ = false;
};

using SharedLevels = std::shared_ptr<const PictureLevels>;

// The picture or mask at another size, blended where its depth allows it. Throws a Failure.
Picture Resized(const Picture& picture, LONG width, LONG height, const Report& report);

// A part of a picture. The left side moves to the left until it stands at the beginning of a byte, and `part` with it.
// Throws std::bad_alloc.
Picture PartOf(const Picture& picture, RECT& part);

#endif
