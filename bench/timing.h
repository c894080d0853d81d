// A small timer, the same in the native and in the Windows program.
//
// What else runs on a machine only ever adds time, so the least time of several samples counts. Rows that are compared
// take their samples in turn, so that a slower moment meets all of them.
#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <limits>

namespace bench {

class Timed {
public:
    explicit Timed(std::function<void()> work) : work_(std::move(work)) {
        if (work_) {
            work_(); // pages, caches and tables that are made once
            while (Run() < kSampleNanoseconds && count_ < (1 << 24)) {
                count_ *= 2;
            }
        }
    }
    void TakeSample() {
        if (work_) {
            least_ = std::min(least_, Run() / count_);
        }
    }
    explicit operator bool() const {
        return static_cast<bool>(work_);
    }
    // Of one call.
    double Nanoseconds() const {
        return least_;
    }

private:
    static constexpr double kSampleNanoseconds = 4e6;

    double Run() {
        const auto start = std::chrono::steady_clock::now();
        for (int i = 0; i != count_; ++i) {
            work_();
        }
        return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
    }

    std::function<void()> work_;
    int count_ = 1;
    double least_ = std::numeric_limits<double>::infinity();
};

} // namespace bench
