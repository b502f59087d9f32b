#pragma once

#include <memory>

#include "app/platform/MainThread.h"
#include "tests/support/ManualQueue.h"

namespace tarnik {

// A main thread that a test moves by hand: posted tasks wait for run(), timers for advance().
class ManualMainThread {
public:
    explicit ManualMainThread(std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>())
        : queue_(std::make_shared<ManualQueue>(std::move(clock))) {
        queue_->hold();
    }

    MainThread record() const;

    // Runs what was posted, and what those tasks post. Returns whether there was any.
    bool run() { return queue_->runWaiting(); }

    // Moves the clock, firing timers at their times, each followed by run().
    void advance(Seconds by) { queue_->advance(by); }

private:
    std::shared_ptr<ManualQueue> queue_;
};

}  // namespace tarnik
