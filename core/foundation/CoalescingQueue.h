#pragma once

#include <deque>
#include <memory>
#include <utility>

#include "core/foundation/Mutex.h"
#include "core/foundation/SerialQueue.h"

namespace tarnik {

// Runs blocking calls one at a time on a serial queue. Updates cause no backlog behind a slow call, because
// only the latest waiting update runs. end() drops all waiting tasks.
//
//   task      runs
//   call      in order, before a waiting update
//   update    after all calls; a newer update replaces a waiting one
//   end       after the running task; waiting and later tasks are dropped
//
// Call from any thread. The owner closes the queue in its destructor, so that tasks may use a plain pointer
// to the owner.
class CoalescingQueue {
public:
    using Task = SerialQueue::Task;

    explicit CoalescingQueue(std::shared_ptr<SerialQueue> queue) : queue_(std::move(queue)) {}

    void call(Task task);
    void update(Task task);

    // Drops the waiting tasks and ignores later calls and updates.
    void end();
    // Calls end(), and runs `last` after the running task.
    void end(Task last);

    // Called by the running task. Returns true if the task's result is outdated, because a newer update waits
    // or end() was called.
    bool isSuperseded() const;
    bool hasEnded() const;

    // Calls end() and waits for the running task.
    void close();

private:
    void runNext();

    const std::shared_ptr<SerialQueue> queue_;
    mutable Mutex mutex_;
    std::deque<Task> calls_ TARNIK_GUARDED_BY(mutex_);
    Task update_ TARNIK_GUARDED_BY(mutex_);  // empty if no update waits
    bool ended_ TARNIK_GUARDED_BY(mutex_) = false;
};

}  // namespace tarnik
