#include "progress_bar.h"

#include <algorithm>
#include <cstdio>

#ifndef _WIN32
#include <unistd.h>
#endif

#include <qv8platform.h>

#include "pictures/interrupt.h"

namespace {

constexpr int kBarWidth = 40;

} // namespace

ProgressBar::ProgressBar(Shown shown) : visible_(shown == Shown::kOnTerminal && ErrorsGoToTerminal()) {}

ProgressBar::~ProgressBar() {
    if (drawnPercent_ >= 0) {
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(ProgressLine(100).size()), "");
        std::fflush(stderr);
    }
}

Report ProgressBar::AsReport() {
    return [this](int percent) {
        if (visible_ && percent != drawnPercent_) {
            Draw(percent);
        }
        return !Interrupted();
    };
}

void ProgressBar::Draw(int percent) {
    drawnPercent_ = percent;
    std::fprintf(stderr, "\r%s", ProgressLine(percent).c_str());
    std::fflush(stderr);
}

bool ErrorsGoToTerminal() {
#ifdef _WIN32
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

std::string ProgressLine(int percent) {
    const int shown = std::clamp(percent, 0, 100);
    const auto filled = static_cast<std::size_t>(shown * kBarWidth / 100);
    const std::string number = std::to_string(shown);
    return "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
           std::string(3 - number.size(), ' ') + number + " %";
}
