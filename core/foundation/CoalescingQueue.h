#pragma once

#include <deque>
#include <memory>
#include <mutex>

#include "core/foundation/SerialQueue.h"

namespace tarnik {

// Runs blocking calls one at a time on a serial queue. A slow call never piles up work behind it: of the
// updates only the latest waits, and the end waits for nothing but the call that runs.
//
//   waiting   runs
//   call      in order, before a waiting update
//   update    after all calls; a newer update replaces it
//   end       next; it drops all others, and those that come later are ignored
//
// Call from any thread. The owner closes it before it goes, so that tasks may use the owner without holding
// it.
class CoalescingQueue {
public:
    using Task = SerialQueue::Task;

    explicit CoalescingQueue(std::shared_ptr<SerialQueue> queue) : queue_(std::move(queue)) {}

    void call(Task task);
    void update(Task task);

    // Drops what waits and ignores later calls and updates.
    void end();
    // As end(), and runs `last` after the running call.
    void end(Task last);

    // For the running call. Returns true if its result is outdated: a newer update waits, or all ends.
    bool isSuperseded() const;
    bool hasEnded() const;

    // Ends, and waits for the running call.
    void close();

private:
    void runNext();

    const std::shared_ptr<SerialQueue> queue_;
    mutable std::mutex mutex_;  // guards what follows
    std::deque<Task> calls_;
    Task update_;  // empty if none waits
    bool ended_ = false;
};

}  // namespace tarnik
