#include "chains/progress.h"

#include <algorithm>
#include <new>
#include <utility>

#include "pictures/interrupt.h"

Progress::Progress(Report report) : report_(std::move(report)), owner_(AddProgressOwner(OnProgress, this)) {
    if (owner_ == 0) { // 0 would make the library open a dialog of its own
        throw std::bad_alloc();
    }
}

Progress::~Progress() {
    RemoveProgressOwner(owner_);
}

// A companion of another make may call with any alignment.
QV8_REALIGN int QV8API Progress::OnProgress(int percent, void* context) {
    const auto* const self = static_cast<const Progress*>(context);
    return self->report_((100 * self->step_ + std::clamp(percent, 0, 100)) / self->stepCount_) ? 1 : 0;
}
