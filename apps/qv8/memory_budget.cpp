#include "memory_budget.h"

#include <algorithm>
#include <chrono>

#ifdef _WIN32
#include <qv8platform.h>
#else
#include <unistd.h>
#endif

#include "pictures/interrupt.h"

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{50}; // for an interrupt
constexpr std::uint64_t kMostOfAProcess = sizeof(void*) == 4 ? std::uint64_t{1} << 30 : ~std::uint64_t{0};

std::uint64_t MachineMemory() {
#ifdef _WIN32
    MEMORYSTATUSEX status{};
    status.dwLength = sizeof status;
    return GlobalMemoryStatusEx(&status) != 0 ? status.ullTotalPhys : std::uint64_t{1} << 30;
#else
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long size = sysconf(_SC_PAGESIZE);
    return pages > 0 && size > 0 ? static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(size)
                                 : std::uint64_t{1} << 30;
#endif
}

} // namespace

MemoryBudget::Share::~Share() {
    if (taken_ != 0) {
        const std::lock_guard lock(budget_.mutex_);
        budget_.used_ -= taken_;
        budget_.given_.notify_all();
    }
}

void MemoryBudget::Share::Take(std::uint64_t bytes) {
    std::unique_lock lock(budget_.mutex_);
    const auto fits = [&] {
        return budget_.used_ == 0 || bytes <= budget_.bytes_ - std::min(budget_.used_, budget_.bytes_);
    };
    while (!budget_.given_.wait_for(lock, kBetweenLooks, fits)) {
        StopIfInterrupted();
    }
    budget_.used_ += bytes;
    taken_ += bytes;
}

std::uint64_t UsualMemory() {
    return std::min(MachineMemory() / 2, kMostOfAProcess);
}
