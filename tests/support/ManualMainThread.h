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

    MainThread record() const;

    // Runs all posted tasks and the tasks that they post. Returns false if there was none.
    bool run() { return queue_->runWaiting(); }

    // Advances the clock. Fires each timer at its time and calls run() after it.
    void advance(Seconds by) { queue_->advance(by); }

private:
    std::shared_ptr<ManualQueue> queue_;
};

}  // namespace tarnik
