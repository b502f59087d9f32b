#pragma once

#include <memory>

#include "app/platform/MainThread.h"
#include "tests/support/ManualQueue.h"

namespace tarnik {

// A main thread under the control of a test: posted tasks wait for run(), timers for advance().
class ManualMainThread {
public:
    explicit ManualMainThread(std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>())
        : queue_(std::make_shared<ManualQueue>(std::move(clock))) {
        queue_->hold();
    }

    MainThread record() const {
        return {.post = [queue = queue_](MainThread::Task task) { queue->post(std::move(task)); },
                .repeat =
                    [queue = std::weak_ptr(queue_)](Seconds interval, MainThread::Task task) {
                        const auto alive = std::make_shared<MainThread::Task>(std::move(task));
                        repeat(queue, interval, alive);
                        return RepeatingTimer([alive] {});
                    }};
    }

    // Runs all posted tasks and the tasks that they post. Returns false if there was none.
    bool run() { return queue_->runWaiting(); }

    // Advances the clock. Fires each timer at its time and calls run() after it.
    void advance(Seconds by) { queue_->advance(by); }

private:
    // Only the timer owns `task`, so the repetition ends with the timer.
    static void repeat(const std::weak_ptr<ManualQueue>& queue, Seconds interval,
                       const std::weak_ptr<MainThread::Task>& task) {
        const auto open = queue.lock();
        if (!open) return;
        open->postAfter(interval, [queue, interval, task] {
            const auto alive = task.lock();
            if (!alive) return;
            repeat(queue, interval, task);
            (*alive)();
        });
    }

    std::shared_ptr<ManualQueue> queue_;
};

}  // namespace tarnik
