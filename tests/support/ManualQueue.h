#pragma once

#include <atomic>
#include <memory>
#include <mutex>

#include "core/foundation/SerialQueue.h"
#include "core/foundation/TaskSchedule.h"

namespace tarnik {

// A clock that stands still until a test moves it.
class ManualClock {
public:
    TimePoint now() const;
    void set(TimePoint now);

private:
    mutable std::mutex mutex_;
    TimePoint now_{std::chrono::hours(1)};
};

// The serial queue's twin without a thread: a posted task runs at once, on the thread that posts, unless one
// is running or the queue is held; then it waits its turn. Delayed tasks run inside advance(), each with the
// clock at its due time.
class ManualQueue final : public SerialQueue {
public:
    explicit ManualQueue(std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>());

    void post(Task task) override;
    Timer postAfter(Seconds delay, Task task) override;
    void cancel(Timer timer) override;
    void run(const Task& task) override;
    void close() override;

    void advance(Seconds by);

    // From hold() to letGo() posted tasks wait for runWaiting() or advance().
    void hold() { holding_ = true; }
    void letGo();
    bool isHolding() const { return holding_; }

    // Runs what is due. Returns whether there was any.
    bool runWaiting();

private:
    std::shared_ptr<ManualClock> clock_;
    std::recursive_mutex running_;  // held while a task runs, so that another thread's work waits
    std::mutex mutex_;
    TaskSchedule schedule_;
    std::atomic<bool> holding_ = false;
    bool draining_ = false;
    bool closed_ = false;
};

}  // namespace tarnik
