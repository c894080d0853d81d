// A lock that one thread holds at a time.
#pragma once

#ifdef _WIN32
#include "qv8platform.h"
#else
#include <mutex>
#endif

namespace qv8 {

// On Windows the system's own: the compiler's comes with a thread library, which loses a slot of the system with every
// load of the file and asks for a newer Windows.
class Lock {
public:
#ifdef _WIN32
    Lock() : isUsable_(InitializeCriticalSectionAndSpinCount(&section_, 0) != FALSE) {}
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() {
        if (isUsable_) {
            DeleteCriticalSection(&section_);
        }
    }
    bool IsUsable() const {
        return isUsable_;
    }
    void Take() {
        EnterCriticalSection(&section_);
    }
    void Release() {
        LeaveCriticalSection(&section_);
    }

private:
    CRITICAL_SECTION section_ = {};
    bool isUsable_;
#else
    bool IsUsable() const { // NOLINT(readability-convert-member-functions-to-static): on Windows it may not be
        return true;
    }
    void Take() {
        mutex_.lock();
    }
    void Release() {
        mutex_.unlock();
    }

private:
    std::mutex mutex_;
#endif
};

// Holds the lock until it goes out of scope.
class LockScope {
public:
    explicit LockScope(Lock& lock) : lock_(lock) {
        lock_.Take();
    }
    LockScope(const LockScope&) = delete;
    LockScope& operator=(const LockScope&) = delete;
    ~LockScope() {
        lock_.Release();
    }

private:
    Lock& lock_;
};

} // namespace qv8
