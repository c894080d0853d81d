#include "system/worker.h"

#include <utility>

void WayBack::Post(Action action) {
    {
        const std::lock_guard lock(mutex_);
        actions_.push_back(std::move(action));
    }
    PostMessageW(window_, kMessage, 0, 0);
}

void WayBack::RunAll() {
    std::vector<Action> actions;
    {
        const std::lock_guard lock(mutex_);
        actions.swap(actions_);
    }
    for (const Action& action : actions) {
        action();
    }
}

bool WayBack::IsEmpty() {
    const std::lock_guard lock(mutex_);
    return actions_.empty();
}

NewestWorker::NewestWorker() : thread_([this] { Run(); }) {}

NewestWorker::~NewestWorker() {
    {
        const std::lock_guard lock(mutex_);
        end_ = true;
        stop_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void NewestWorker::Start(Work work) {
    {
        const std::lock_guard lock(mutex_);
        waiting_ = std::move(work);
        stop_ = true;
    }
    changed_.notify_one();
}

bool NewestWorker::IsBusy() {
    const std::lock_guard lock(mutex_);
    return works_ || waiting_;
}

void NewestWorker::Run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return end_ || waiting_; });
        if (end_) {
            return;
        }
        const Work work = std::exchange(waiting_, nullptr);
        stop_ = false;
        works_ = true;
        lock.unlock();
        work(stop_);
        lock.lock();
        works_ = false;
    }
}

TaskWorker::~TaskWorker() {
    Stop();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void TaskWorker::Start(Work work) {
    if (thread_.joinable()) {
        thread_.join();
    }
    isBusy_ = true;
    stop_ = false;
    thread_ = std::thread([this, work = std::move(work)] { work(stop_); });
}
