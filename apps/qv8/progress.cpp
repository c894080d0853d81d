#include "progress.h"

#include <algorithm>
#include <cstdio>
#include <new>

#ifndef _WIN32
#include <unistd.h>
#endif

#include <qv8effect.h>

#include "pictures/interrupt.h"

namespace {

constexpr int kBarWidth = 40;

} // namespace

Progress::Progress(Bar bar)
    : visible_(bar == Bar::kWhenTerminal && ErrorsGoToTerminal()), owner_(AddProgressOwner(OnProgress, this)) {
    if (owner_ == 0) { // 0 would make the library open a dialog of its own
        throw std::bad_alloc();
    }
}

Progress::~Progress() {
    RemoveProgressOwner(owner_);
    if (drawnPercent_ >= 0) {
        std::fprintf(stderr, "\r%*s\r", static_cast<int>(ProgressLine(100).size()), "");
        std::fflush(stderr);
    }
}

// A companion of another make may call with any alignment.
QV8_REALIGN int QV8API Progress::OnProgress(int percent, void* context) {
    auto* const self = static_cast<Progress*>(context);
    const int whole = (100 * self->step_ + std::clamp(percent, 0, 100)) / self->stepCount_;
    if (self->visible_ && whole != self->drawnPercent_) {
        self->Draw(whole);
    }
    return Interrupted() ? 0 : 1;
}

void Progress::Draw(int percent) {
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
