#include "core/foundation/CoalescingQueue.h"

#include <utility>

namespace tarnik {

void CoalescingQueue::call(Task task) {
    {
        const MutexLock lock(mutex_);
        if (ended_) return;
        calls_.push_back(std::move(task));
    }
    queue_->post([this] { runNext(); });
}

void CoalescingQueue::update(Task task) {
    {
        const MutexLock lock(mutex_);
        if (ended_) return;
        std::swap(task, update_);  // the old task's destructor runs unlocked: it may call this queue
    }
    if (!task) queue_->post([this] { runNext(); });
}

void CoalescingQueue::end() {
    std::deque<Task> calls;  // destroyed without the lock
    Task update;
    const MutexLock lock(mutex_);
    ended_ = true;
    std::swap(calls, calls_);
    std::swap(update, update_);
}

void CoalescingQueue::end(Task last) {
    end();
    queue_->post(std::move(last));
}

bool CoalescingQueue::isSuperseded() const {
    const MutexLock lock(mutex_);
    return ended_ || update_;
}

bool CoalescingQueue::hasEnded() const {
    const MutexLock lock(mutex_);
    return ended_;
}

void CoalescingQueue::close() {
    end();
    queue_->close();
}

// Runs the next task, unless all waiting tasks were dropped.
void CoalescingQueue::runNext() {
    Task next;
    {
        const MutexLock lock(mutex_);
        if (!calls_.empty()) {
            next = std::move(calls_.front());
            calls_.pop_front();
        } else {
            next = std::exchange(update_, nullptr);
        }
    }
    if (next) next();
}

}  // namespace tarnik
