// Tells the library whom to report progress to: a bar on the terminal, and the place where Ctrl-C stops the work.
#ifndef QV8_TOOL_PROGRESS_H
#define QV8_TOOL_PROGRESS_H

#include <string>

#include <qv8com.h>

#include "pictures/failure.h"

class Progress {
public:
    enum class Bar { kHidden, kWhenTerminal };

    // Throws a Failure when memory is short.
    explicit Progress(Bar bar);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress(); // takes the bar away

    // What calls to the library are given as their progress owner.
    DWORD Owner() const {
        return owner_;
    }

private:
    static int QV8API OnProgress(int percent, void* context);
    void Draw(int percent);

    bool visible_;
    int drawnPercent_ = -1;
    DWORD owner_;
};

// One line that shows `percent`, made to be drawn over the one before.
std::string ProgressLine(int percent);

// What a call of the library that left `status` means for this program. `subject` stands in front of the words.
Failure StatusFailure(const std::string& subject, int status);

#endif
