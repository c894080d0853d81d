// Tells the library whom to report to.
#ifndef QV8_CHAINS_PROGRESS_H
#define QV8_CHAINS_PROGRESS_H

#include <cstddef>
#include <functional>

#include <qv8com.h>

// Told how far all steps together are, 0..100, on the thread that works. Returns whether to go on; it must not throw.
using Report = std::function<bool(int percent)>;

class Progress {
public:
    // Throws std::bad_alloc when memory is short.
    explicit Progress(Report report);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

    // From now on reports are about one of `count` steps.
    void BeginStep(std::size_t index, std::size_t count) {
        step_ = static_cast<int>(index);
        stepCount_ = static_cast<int>(count);
    }

    // What calls to the library are given as their progress owner.
    DWORD Owner() const {
        return owner_;
    }

private:
    static int QV8API OnProgress(int percent, void* context);

    Report report_;
    int step_ = 0;
    int stepCount_ = 1;
    DWORD owner_;
};

#endif
