#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "core/foundation/SerialQueue.h"

namespace tarnik {

// Restarts a child after a delay, and separates the events of the current run from those of earlier ones.
//
// Owned by the child's supervisor and used on the supervisor's queue only. The owner closes the queue before
// it destroys this.
class ChildRestarter {
public:
    // A handle of one run of the child, for its callbacks on other threads. May outlive the restarter.
    class Run {
    public:
        // Posts `task` to the queue. When the task is due, it is dropped if the run is no longer the current
        // one. Call from any thread.
        void post(SerialQueue::Task task) const;

    private:
        friend class ChildRestarter;
        std::weak_ptr<SerialQueue> queue_;
        std::weak_ptr<const void> current_;  // expired once the run is over
    };

    // `start` is called on the queue when a delay has passed.
    ChildRestarter(std::shared_ptr<SerialQueue> queue, std::function<void()> start);

    // Begins a run, which replaces the current one.
    Run beginRun();

    // Ends the current run, if there is one.
    void endRun();

    // Schedules a restart and cancels a pending one, so that at most one is pending.
    void restartAfter(Seconds delay);
    void cancelRestart();

private:
    const std::shared_ptr<SerialQueue> queue_;
    const std::function<void()> start_;
    std::shared_ptr<const void> current_;  // null if there is no run
    std::optional<SerialQueue::Timer> pendingRestart_;
};

}  // namespace tarnik
