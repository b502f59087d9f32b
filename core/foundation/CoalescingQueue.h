#pragma once

#include <deque>
#include <memory>
#include <utility>

#include "core/foundation/Mutex.h"
#include "core/foundation/SerialQueue.h"

namespace tarnik {

// Runs blocking calls one at a time on a serial queue, without a backlog behind a slow call: of the waiting
// updates only the latest runs, and the end waits only for the running call.
//
//   waiting   runs
//   call      in order, before a waiting update
//   update    after all calls; a newer update replaces it
//   end       next; drops all others, and later ones are ignored
//
// Call from any thread. The owner closes it in its destructor, so that tasks may use the owner without
// holding it.
class CoalescingQueue {
public:
    using Task = SerialQueue::Task;

    explicit CoalescingQueue(std::shared_ptr<SerialQueue> queue) : queue_(std::move(queue)) {}

    void call(Task task);
    void update(Task task);

    // Drops the waiting tasks and ignores later calls and updates.
    void end();
    // Does the same, and runs `last` after the running call.
    void end(Task last);

    // For the running call. Returns true if its result is outdated: a newer update waits, or end() was
    // called.
    bool isSuperseded() const;
    bool hasEnded() const;

    // Calls end() and waits for the running call.
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
