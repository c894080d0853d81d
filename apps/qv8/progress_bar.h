// How far the work is, as a bar on the terminal, and the place where Ctrl-C stops it.
#ifndef QV8_APP_PROGRESS_BAR_H
#define QV8_APP_PROGRESS_BAR_H

#include <string>

#include "chains/progress.h"

class ProgressBar {
public:
    enum class Shown { kNever, kOnTerminal };

    explicit ProgressBar(Shown shown);
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar(); // takes the bar away

    // Draws it and asks to stop when an interrupt was noted. Good as long as the bar.
    Report AsReport();

private:
    void Draw(int percent);

    bool visible_;
    int drawnPercent_ = -1;
};

// Whether standard error is a terminal.
bool ErrorsGoToTerminal();

// One line that shows `percent`, made to be drawn over the one before.
std::string ProgressLine(int percent);

#endif
