// Tells the library whom to report progress to: a bar on the terminal, and the place where Ctrl-C stops the work.
#ifndef QV8_APP_PROGRESS_H
#define QV8_APP_PROGRESS_H

#include <cstddef>
#include <string>

#include <qv8com.h>

class Progress {
public:
    enum class Bar { kHidden, kWhenTerminal };

    // Throws a Failure when memory is short.
    explicit Progress(Bar bar);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress(); // takes the bar away

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
    void Draw(int percent);

    bool visible_;
    int step_ = 0;
    int stepCount_ = 1;
    int drawnPercent_ = -1;
    DWORD owner_;
};

// Whether standard error is a terminal.
bool ErrorsGoToTerminal();

// One line that shows `percent`, made to be drawn over the one before.
std::string ProgressLine(int percent);

#endif
