#pragma once

#include <functional>
#include <utility>

#include "core/foundation/Time.h"

namespace tarnik {

// Repeats a task on the main thread until this object is destroyed. Main thread only.
class RepeatingTimer {
public:
    // `end` stops the repetition. The task does not run after `end` was called.
    explicit RepeatingTimer(std::function<void()> end) : end_(std::move(end)) {}

    ~RepeatingTimer() {
        if (end_) end_();
    }
    RepeatingTimer(const RepeatingTimer&) = delete;
    RepeatingTimer& operator=(const RepeatingTimer&) = delete;
    RepeatingTimer(RepeatingTimer&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
    RepeatingTimer& operator=(RepeatingTimer&& other) noexcept {
        std::swap(end_, other.end_);
        return *this;
    }

private:
    std::function<void()> end_;
};

// The main thread's event loop. The application's state is used only on this thread.
struct MainThread {
    using Task = std::function<void()>;

    // Queues `task` and returns before the task runs. Tasks run in the order of their posts. Tasks that have
    // not run when the event loop ends are dropped. Call from any thread.
    std::function<void(Task task)> post;

    // Runs `task` after each `interval` of the steady clock. Intervals that the program missed, for example
    // during system sleep, are skipped. Main thread only.
    std::function<RepeatingTimer(Seconds interval, Task task)> repeat;
};

}  // namespace tarnik
