// Bounds the memory that pictures under way take, however many threads there are.
#ifndef QV8_APP_MEMORY_BUDGET_H
#define QV8_APP_MEMORY_BUDGET_H

#include <condition_variable>
#include <cstdint>
#include <mutex>

class MemoryBudget {
public:
    explicit MemoryBudget(std::uint64_t bytes) : bytes_(bytes) {}

    // What one thread holds of the budget, given back at its end.
    class Share {
    public:
        explicit Share(MemoryBudget& budget) : budget_(budget) {}
        Share(const Share&) = delete;
        Share& operator=(const Share&) = delete;
        ~Share();

        // Waits until the budget has that much left. What is more than all of it waits until nobody else has any. A
        // share takes once. Throws a Failure with kExitCancelled when an interrupt comes meanwhile.
        void Take(std::uint64_t bytes);

    private:
        MemoryBudget& budget_;
        std::uint64_t taken_ = 0;
    };

private:
    std::mutex mutex_;
    std::condition_variable given_;
    std::uint64_t bytes_;
    std::uint64_t used_ = 0;
};

// Half of what the machine has, and no more than a process of this system can use.
std::uint64_t UsualMemory();

#endif
