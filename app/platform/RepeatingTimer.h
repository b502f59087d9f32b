#pragma once

#include <functional>
#include <utility>

namespace tarnik {

// A task that is run again and again on the main thread for as long as this lives. Main thread only.
class RepeatingTimer {
public:
    // `end` stops the repetition; after it the task doesn't run again.
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

}  // namespace tarnik
