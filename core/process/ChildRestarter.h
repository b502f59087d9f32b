#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "core/foundation/SerialQueue.h"

namespace tarnik {

// Restarts a child after a delay, and drops the events of runs that are over.
//
// Owned by the child's supervisor and used on the supervisor's queue only. The owner closes the queue before
// it destroys this object.
class ChildRestarter {
public:
    // One run of the child. The run's callbacks on other threads hold copies, which may outlive the
    // restarter.
    class Run {
    public:
        // Posts `task` to the queue. The task is dropped if this run isn't the current run when the queue
        // reaches the task. Call from any thread.
        void post(SerialQueue::Task task) const;

    private:
        friend class ChildRestarter;
        std::weak_ptr<SerialQueue> queue_;
        std::weak_ptr<const void> current_;  // expired once the run is over
    };

    // `start` is called on the queue when the delay of a restart has passed.
    ChildRestarter(std::shared_ptr<SerialQueue> queue, std::function<void()> start);

    // Ends the current run, if any, and begins a new one.
    Run beginRun();

    // Ends the current run, if any.
    void endRun();

    // Cancels a pending restart and schedules a new one.
    void restartAfter(Seconds delay);
    void cancelRestart();

private:
    const std::shared_ptr<SerialQueue> queue_;
    const std::function<void()> start_;
    std::shared_ptr<const void> current_;  // null between two runs
    std::optional<SerialQueue::Timer> pendingRestart_;
};

}  // namespace tarnik
