#include "tests/support/ManualQueue.h"

#include <utility>

namespace tarnik {

TimePoint ManualClock::now() const {
    const std::lock_guard lock(mutex_);
    return now_;
}

void ManualClock::set(TimePoint now) {
    const std::lock_guard lock(mutex_);
    now_ = now;
}

ManualQueue::ManualQueue(std::shared_ptr<ManualClock> clock) : clock_(std::move(clock)) {}

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

void ManualQueue::run(const Task& task) {
    post(task);
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
    while (true) {
        std::optional<TimePoint> due;
        {
            const std::lock_guard lock(mutex_);
            due = schedule_.nextDue();
        }
        if (!due || *due > target) break;
        if (*due > clock_->now()) clock_->set(*due);
        runWaiting();
    }
    clock_->set(target);
}

void ManualQueue::letGo() {
    holding_ = false;
    runWaiting();
}

// Other threads wait for the running task, so that a posted task is done when post() returns. A task posted
// by a task runs after it.
bool ManualQueue::runWaiting() {
    const std::lock_guard turn(running_);
    bool ran = false;
    if (draining_) return ran;
    draining_ = true;
    while (true) {
        std::optional<TaskSchedule::Task> task;
        {
            const std::lock_guard lock(mutex_);
            task = schedule_.take(clock_->now());
        }
        if (!task) break;
        (*task)();
        ran = true;
    }
    draining_ = false;
    return ran;
}

}  // namespace tarnik
