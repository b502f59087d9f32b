#include "tests/support/ManualQueue.h"

#include <utility>

namespace tarnik {

void ManualQueue::post(Task task) {
    {
        const std::lock_guard lock(mutex_);
        if (closed_) return;
        schedule_.push(clock_->now(), std::move(task));
    }
    if (!holding_) runWaiting();
}

SerialQueue::Timer ManualQueue::postAfter(Seconds delay, Task task) {
    const std::lock_guard lock(mutex_);
    return closed_ ? 0 : schedule_.push(after(clock_->now(), delay), std::move(task));
}

void ManualQueue::cancel(Timer timer) {
    std::optional<Task> dropped;  // destroyed without the lock: it may call this queue
    const std::lock_guard lock(mutex_);
    dropped = schedule_.cancel(timer);
}

void ManualQueue::close() {
    const std::lock_guard turn(running_);
    TaskSchedule dropped;
    const std::lock_guard lock(mutex_);
    closed_ = true;
    std::swap(dropped, schedule_);
}

void ManualQueue::advance(Seconds by) {
    const TimePoint target = after(clock_->now(), by);
    const auto nextDue = [this] {
        const std::lock_guard lock(mutex_);
        return schedule_.nextDue();
    };
    for (auto due = nextDue(); due && *due <= target; due = nextDue()) {
        clock_->set(std::max(*due, clock_->now()));
        runWaiting();
    }
    clock_->set(target);
}

// Other threads wait for the running task, so that a posted task is done when post() returns. A task posted
// by a task runs after it.
bool ManualQueue::runWaiting() {
    const std::lock_guard turn(running_);
    if (draining_) return false;
    draining_ = true;
    const auto take = [this] {
        const std::lock_guard lock(mutex_);
        return schedule_.take(clock_->now());
    };
    bool ran = false;
    for (auto task = take(); task; task = take(), ran = true) (*task)();
    draining_ = false;
    return ran;
}

}  // namespace tarnik
