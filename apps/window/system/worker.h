// Work beside the thread of the windows, and its way back to it.
#ifndef QV8_WINDOW_SYSTEM_WORKER_H
#define QV8_WINDOW_SYSTEM_WORKER_H

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <qv8platform.h>

using Action = std::function<void()>;

// Carries out actions on the thread of a window, which calls RunAll() when it is sent the message.
class WayBack {
public:
    static constexpr UINT kMessage = WM_APP + 1;

    void Attach(HWND window) {
        window_ = window;
    }
    void Post(Action action);
    bool IsEmpty();
    void RunAll();

private:
    HWND window_ = nullptr;
    std::mutex mutex_;
    std::vector<Action> actions_;
};

// Work on a thread. It looks at `stop` from time to time.
using Work = std::function<void(const std::atomic<bool>& stop)>;

// A thread for work of which only the newest counts: a new one takes the place of what waits, and what runs is told to
// stop.
class NewestWorker {
public:
    NewestWorker();
    NewestWorker(const NewestWorker&) = delete;
    NewestWorker& operator=(const NewestWorker&) = delete;
    ~NewestWorker();

    void Start(Work work);
    void Stop() {
        Start(nullptr);
    }
    bool IsBusy();

private:
    void Run();

    std::mutex mutex_;
    std::condition_variable changed_;
    Work waiting_;
    std::atomic<bool> stop_ = false;
    bool end_ = false;
    bool works_ = false;
    std::thread thread_;
};

// Frees what takes long on a thread of its own, or here when there can be none. While a large block is freed nobody
// else gets memory, so it pauses after each.
template <class Type>
void FreeElsewhere(std::vector<Type> things) {
    if (things.empty()) {
        return;
    }
    try {
        std::thread([kept = std::move(things)]() mutable {
            constexpr std::chrono::milliseconds kPause{10};
            for (; !kept.empty(); kept.pop_back()) {
                std::this_thread::sleep_for(kPause);
            }
        }).detach();
    } catch (const std::system_error&) {
    }
}

// One piece of long work at a time: opening, saving, applying.
class TaskWorker {
public:
    TaskWorker() = default;
    TaskWorker(const TaskWorker&) = delete;
    TaskWorker& operator=(const TaskWorker&) = delete;
    ~TaskWorker();

    // From Start() to Finish(), both of which are called on the thread of the windows.
    bool IsBusy() const {
        return isBusy_;
    }
    void Start(Work work);
    // Asks what runs to stop.
    void Stop() {
        stop_ = true;
    }
    // The work has told its result. Its thread may still free what it used, which nobody waits for.
    void Finish() {
        isBusy_ = false;
    }

private:
    std::atomic<bool> stop_ = false;
    bool isBusy_ = false;
    std::thread thread_;
};

#endif
